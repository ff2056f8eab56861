#pragma once

#include "apps/sorvikbatch/common_options.h"
#include "apps/sorvikbatch/compression_options.h"
#include "core/vocabulary/formats.h"

namespace sorvik {

/// What `sorvikbatch convert` is asked to do.
struct ConvertOptions {
    CommonOptions common;
    ImageFormat to = ImageFormat::png;
    bool stripMetadata = false;
    QString outputPrefix;
    QString outputSuffix;
    bool compress = false;  ///< compress the results
    CompressionOptions compression;
};

/// Describes the command to the parser, which fills the object when it parses; the object must outlive it.
void describeConvert(CLI::App& command, ConvertOptions& options, const QString& folder);

}  // namespace sorvik
