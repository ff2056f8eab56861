#pragma once

#include <QByteArray>
#include <QString>

#include "core/vocabulary/formats.h"

namespace sorvik {

/// Whether the first bytes of a file are those of the format. Formats without a fixed beginning
/// pass with any four bytes.
[[nodiscard]] bool hasSignature(const QByteArray& firstBytes, ImageFormat format);

/// The check of a produced file: reads 12 bytes and remembers the answer under the path,
/// whatever format is asked about the next time. A file that does not exist is false and not remembered.
/// Any thread; blocks for the read.
[[nodiscard]] bool isValidImageFile(const QString& path, ImageFormat format);

/// Forgets all answers of isValidImageFile.
void clearSignatureCache();

}  // namespace sorvik
