#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// The writer for PngPurpose::quick, of a valid layout; see png_writer.h. Besides a few rows its memory is less than
/// a megabyte.
[[nodiscard]] std::unique_ptr<RowWriter> makeQuickPngWriter(ByteSink& sink, const PixelLayout& layout,
                                                            const PictureMetadata& metadata);

}  // namespace sorvik::codecs
