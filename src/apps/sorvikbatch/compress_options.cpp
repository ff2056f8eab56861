#include "apps/sorvikbatch/compress_options.h"

#include <CLI/CLI.hpp>

namespace sorvik {

void describeCompress(CLI::App& command, CompressOptions& options, const QString& folder) {
    describeCompression(command, options.compression);
    describeCommon(command, options.common, "The files to compress: GIF, JPEG, PDF, PNG, TIFF, WebP, AVIF", folder);
    command.footer(
        "Each result is written beside its source under the prefix and the suffix, as .jpg, .tiff and so on. Without\n"
        "either it takes its source's place where that has this very extension. Metadata is left out of the\n"
        "results. --heic-quality has no effect here.\n"
        "One line is printed a file as it ends: name, from, to, outcome, size, saving. The summary comes last.\n"
        "Exit status: 0 when every file succeeded, 1 when one failed or can't be compressed, 2 for bad usage.");
}

}  // namespace sorvik
