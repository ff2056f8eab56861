#pragma once

#include <QString>

#include <cstdint>

#include "core/batch_engine.h"

namespace sorvik {

/// Everything that shrinking one file needs, settled beforehand.
struct CompressJob {
    QString sourcePath;
    QString outputPath;
    ImageFormat format = ImageFormat::jpeg;
    double value = 0;  ///< the recipe's, on its own scale
};

/// Looks at the source and the place of the result before time is spent. Gives the name under which rows with one
/// output take turns: the result's place without links. Throws ConversionError. Pool thread; blocks.
[[nodiscard]] QString checkCompression(const CompressJob& job);

/// Shrinks a file into its output and gives the result's size in bytes. The result takes its place whole or not at
/// all. Where it is the source itself, under any name, the source stands behind a backup until the result is there.
/// A source that changes meanwhile stays as it is. Throws ConversionError. Pool thread; blocks.
[[nodiscard]] std::int64_t compressFile(BatchEngine& engine, const CompressJob& job);

}  // namespace sorvik
