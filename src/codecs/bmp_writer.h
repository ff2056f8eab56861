#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// Writes a Windows bitmap: 24 bits a pixel, top row first (negative height is avoided where a reader
/// may not know it, so rows are placed by position in a seekable file), or 32 bits with a V5 header
/// when there is alpha. Takes 8-bit layouts only. `fileDescriptor` must be seekable and stays the caller's.
[[nodiscard]] std::unique_ptr<RowWriter> makeBmpWriter(int fileDescriptor, const PixelLayout& layout,
                                                       const PictureMetadata& metadata);

}  // namespace sorvik::codecs
