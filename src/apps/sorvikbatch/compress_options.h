#pragma once

#include "apps/sorvikbatch/common_options.h"
#include "apps/sorvikbatch/compression_options.h"

namespace sorvik {

/// What `sorvikbatch compress` is asked to do.
struct CompressOptions {
    CommonOptions common;
    CompressionOptions compression;
};

/// Describes the command to the parser, which fills the object when it parses; the object must outlive it.
void describeCompress(CLI::App& command, CompressOptions& options, const QString& folder);

}  // namespace sorvik
