#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// Writes a Windows bitmap from the start of the file: 8 bits a pixel for grey, 24 for colours, 32 with a
/// V5 header where there is alpha. A profile for RGB is embedded, which takes a V5 header as well. Rows
/// are stored from the bottom up, as every reader knows it, and are placed by position: `fileDescriptor`
/// must be seekable; it stays the caller's.
/// Takes 8-bit layouts only (std::invalid_argument). Throws SinkError, with EFBIG beyond 4 GiB.
[[nodiscard]] std::unique_ptr<RowWriter> makeBmpWriter(int fileDescriptor, const PixelLayout& layout,
                                                       const PictureMetadata& metadata);

}  // namespace sorvik::codecs
