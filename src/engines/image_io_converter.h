#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include "engines/image_extensions.h"

namespace sorvik {

/// Reads icon files: the frame of the greatest area, encoded as the format asks. `format` is a file
/// extension; one that this road has no writer for gives PNG. `quality` is 0.0 to 1.0 and reaches JPEG only.
/// Absent on failure, which is logged; throws ConversionError where the cause is the disk or the memory, or
/// TemporaryFileError. Blocks.
[[nodiscard]] std::optional<QByteArray> convertICOFile(const ImageExtensions& extensions, const QString& path,
                                                       const QString& format, bool stripMetadata, double quality);

/// What an icon frame is written as: "jpeg" for "jpg", "png" for a format without a writer here.
[[nodiscard]] QString encoderFormat(const QString& format);

}  // namespace sorvik
