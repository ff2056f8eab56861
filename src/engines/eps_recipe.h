#pragma once

#include <QString>
#include <QStringList>

#include "engines/process_config_cache.h"

namespace sorvik {

// EPS goes to `magick` first, which reads it through Ghostscript, and to `gs` directly where that fails. Formats
// are file extensions in any letter case; quality is 0.0 to 1.0. All block, log their failures and answer false.

[[nodiscard]] bool convertEPSFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                  const QString& format, bool stripMetadata, double quality);

/// The direct run. It strips nothing, and for GIF its file holds PNG data.
[[nodiscard]] bool convertEPSWithGhostscript(ProcessConfigCache& tools, const QString& inputPath,
                                             const QString& outputPath, const QString& format, bool stripMetadata,
                                             double quality);

/// The whole vector for `magick`.
[[nodiscard]] QStringList epsArguments(const QString& input, const QString& format, bool stripMetadata, double quality,
                                       const QString& output);

/// The device of the direct run to a format.
[[nodiscard]] QString epsDevice(const QString& format);

}  // namespace sorvik
