#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

#include "core/batch_engine.h"
#include "platform/files.h"

namespace sorvik {

/// Everything that bringing one conversion to its place needs, settled beforehand.
struct FinishJob {
    QString sourcePath;
    FileIdentity source;  ///< what the source held when it was converted
    QString outputPath;
    ImageFormat format = ImageFormat::png;
    QByteArray bytes;
    std::optional<double> compression;  ///< the recipe's value, when compression is to follow
};

/// What the row shows of a finished file.
struct FinishedFile {
    std::int64_t convertedSize = 0;  ///< bytes, before compression
    std::optional<std::int64_t> outputSize;
    bool wasCompressed = false;
};

/// Writes the bytes to the output path atomically, compresses if asked, checks the result's signature and
/// measures it. A source that has changed since it was converted leaves the output as it was. Throws
/// ConversionError. Pool thread; blocks.
[[nodiscard]] FinishedFile finishFile(BatchEngine& engine, const FinishJob& job);

}  // namespace sorvik
