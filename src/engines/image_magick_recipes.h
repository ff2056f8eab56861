#pragma once

#include <QString>
#include <QStringList>

#include "engines/process_config_cache.h"

namespace sorvik {

// The option sets and file recipes of `magick` conversions. Formats are file extensions in any letter case;
// quality is 0.0 to 1.0 and clamped.

/// What stripping adds to a vector, "-strip" first.
[[nodiscard]] QStringList metadataArguments(const QString& format);

/// What a quality becomes for an output format; empty where the tool's own default applies. Values
/// are truncated, not rounded. Logs what it chose for PNG and GIF.
[[nodiscard]] QStringList qualityArguments(const QString& format, double quality);

/// The number of colours for a GIF reduction level, 1 (16 colours) to 9 (256 colours). A level below 1
/// gives 32, one above 9 gives 256.
[[nodiscard]] int gifColors(int level);

/// Convert a file that `magick` reads to WebP or AVIF. False on any failure, which is logged. Block.
[[nodiscard]] bool convertWebPFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                   double quality);
[[nodiscard]] bool convertAVIFFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                   double quality);

/// The whole vector of both recipes.
[[nodiscard]] QStringList fileRecipeArguments(const QString& input, const QString& format, double quality,
                                              const QString& output);

}  // namespace sorvik
