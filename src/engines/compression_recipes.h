#pragma once

#include <QString>
#include <QStringList>

#include "engines/process_config_cache.h"

namespace sorvik {

// The recipes that make a file smaller and keep its format. Quality is 0 to 100 here and truncated to an
// integer, a level is an integer; neither is clamped. All metadata and profiles go. Each recipe runs a tool to
// its end, blocks, and answers true when the tool has left a file; failures are logged. None compares sizes. The two
// paths must not name one file.

[[nodiscard]] bool compressJPEG(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                double quality);
[[nodiscard]] bool compressWebP(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                double quality);
[[nodiscard]] bool compressHEIC(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                double quality);
[[nodiscard]] bool compressAVIF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                double quality);

/// Lossless means LZW and no quality at all; else JPEG inside the TIFF.
[[nodiscard]] bool compressTIFF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                bool lossless, double quality);

/// `level` is deflate's, 0 to 9; one below 4 reduces the picture to 256 colours of 8 bits first.
[[nodiscard]] bool compressPNG(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                               int level);

/// `level` is 1 (16 colours) to 9 (256 colours); see gifColors().
[[nodiscard]] bool compressGIF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                               int level);

// The whole vectors.

[[nodiscard]] QStringList jpegCompressionArguments(const QString& input, double quality, const QString& output);
[[nodiscard]] QStringList webPCompressionArguments(const QString& input, double quality, const QString& output);
[[nodiscard]] QStringList heicCompressionArguments(const QString& input, double quality, const QString& output);
[[nodiscard]] QStringList avifCompressionArguments(const QString& input, double quality, const QString& output);
[[nodiscard]] QStringList tiffCompressionArguments(const QString& input, bool lossless, double quality,
                                                   const QString& output);
[[nodiscard]] QStringList pngCompressionArguments(const QString& input, int level, const QString& output);
[[nodiscard]] QStringList gifCompressionArguments(const QString& input, int level, const QString& output);

}  // namespace sorvik
