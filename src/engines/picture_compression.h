#pragma once

#include <QString>

#include "core/vocabulary/formats.h"
#include "engines/process_config_cache.h"

namespace sorvik {

/// What a compressed picture is for.
enum class CompressedFor {
    itself,      ///< the input stays
    replacement  ///< it takes the input's place: nothing of a document may be lost
};

/// Shrinks a picture by its format's recipe, from one file to another that nobody else uses yet. `value` is on the
/// recipe's own scale: 0 to 100, or a level for PNG and GIF. The result was opened again: it is whole, of the same
/// kind, size in pixels and number of pages as the input, and lies and looks as it does. Throws ConversionError.
/// Blocks.
void compressPicture(ProcessConfigCache& tools, ImageFormat format, const QString& inputPath, const QString& outputPath,
                     double value, CompressedFor purpose);

}  // namespace sorvik
