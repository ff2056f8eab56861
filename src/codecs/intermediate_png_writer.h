#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// The writer for PngPurpose::intermediate.
[[nodiscard]] std::unique_ptr<RowWriter> makeIntermediatePngWriter(ByteSink& sink, const PixelLayout& layout,
                                                                   const PictureMetadata& metadata);

}  // namespace sorvik::codecs
