#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// The writer for PngPurpose::quick, of a valid layout; see png_writer.h.
[[nodiscard]] std::unique_ptr<RowWriter> makeQuickPngWriter(ByteSink& sink, const PixelLayout& layout,
                                                            const PictureMetadata& metadata);

}  // namespace sorvik::codecs
