#pragma once

#include <QString>
#include <QStringList>

#include "codecs/sips_status.h"
#include "engines/conversion_error.h"
#include "engines/process_config_cache.h"

namespace sorvik {

/// How a conversion by the system tool ended.
struct SipsConversion {
    bool success = false;
    QString outputPath;  ///< beside the input, with the format's extension; the caller deletes it
    codecs::SipsStatus status = codecs::SipsStatus::failed;
};

/// The format in the tool's spelling of extensions: lower case, "jpeg" as "jpg", "tif" as "tiff".
[[nodiscard]] QString sipsFormat(const QString& format);

/// Whether the tool is asked for this format at all, in any spelling.
[[nodiscard]] bool isSipsFormat(const QString& format);

/// The whole vector. `format` as sipsFormat() gives it; `quality` is 0.0 to 1.0 and read only when not
/// lossless.
[[nodiscard]] QStringList sipsArguments(const QString& input, const QString& format, double quality, bool lossless,
                                        const QString& output);

/// The vector of the second try for a JPEG.
[[nodiscard]] QStringList sipsFallbackArguments(const QString& input, const QString& output);

/// Converts a file by the system tool, for JPEG with a second try at the top quality. `format` is a
/// file extension. Stripping, when asked for, is part of the success. A file named ".svg" goes to the drawing tool
/// instead, where neither quality nor stripping applies. Blocks.
[[nodiscard]] SipsConversion convertWithSips(ProcessConfigCache& tools, const QString& inputPath, const QString& format,
                                             double quality, bool lossless, bool stripMetadata);

/// What the routes throw for a job of the tool that failed.
[[nodiscard]] ConversionError conversionError(codecs::SipsStatus status);

}  // namespace sorvik
