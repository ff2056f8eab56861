#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::sips {

/// Writes an uncompressed TIFF (TIFF 6.0) in strips, 8 or 16 bits, alpha unassociated, with ICC, XMP
/// and IPTC in their tags. An EXIF block becomes the beginning of the file, byte for byte, so that all
/// offsets in it, those of maker notes too, stay true; the file takes its byte order. `sink` must
/// outlive the writer. Throws Failure (tooLarge) where the file would pass 4 GiB.
[[nodiscard]] std::unique_ptr<codecs::RowWriter> makeTiffWriter(codecs::ByteSink& sink,
                                                                const codecs::PixelLayout& layout,
                                                                const codecs::PictureMetadata& metadata);

}  // namespace sorvik::sips
