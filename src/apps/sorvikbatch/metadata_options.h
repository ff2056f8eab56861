#pragma once

#include "apps/sorvikbatch/common_options.h"

namespace sorvik {

/// What `sorvikbatch metadata` is asked to show.
struct MetadataOptions {
    CommonOptions common;
};

/// Describes the command to the parser, which fills the object when it parses; the object must outlive it.
void describeMetadata(CLI::App& command, MetadataOptions& options, const QString& folder);

}  // namespace sorvik
