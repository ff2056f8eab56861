#pragma once

#include <QString>
#include <QStringList>

#include "engines/process_config_cache.h"

namespace sorvik {

/// Converts an AI file: `gs` makes a JPEG of its page, `magick` any other format of that, so that transparency is
/// lost. `format` is a file extension in any letter case; quality is 0.0 to 1.0. Writes a running log. False on any
/// failure. Blocks.
[[nodiscard]] bool convertAIFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                 const QString& format, double quality);

/// The log lines that tell the kind of a failure by what `gs` said, the first match in the table's order.
[[nodiscard]] QStringList aiFailureLines(const QString& toolOutput);

}  // namespace sorvik
