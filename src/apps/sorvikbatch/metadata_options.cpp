#include "apps/sorvikbatch/metadata_options.h"

#include <CLI/CLI.hpp>

namespace sorvik {

void describeMetadata(CLI::App& command, MetadataOptions& options, const QString& folder) {
    describeCommon(command, options.common, "The files to look at", folder);
    command.footer(
        "One line is printed an entry, by label; several files have their names above their entries.\n"
        "Exit status: 0 when every file was read, with or without metadata, 1 when one was not, 2 for bad usage.");
}

}  // namespace sorvik
