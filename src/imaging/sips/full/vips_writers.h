#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::sips {

/// Writes a GIF of one frame: a palette of up to 256 colours, dithered, transparent or opaque pixels.
/// Takes 8-bit layouts. `sink` must outlive the writer.
[[nodiscard]] std::unique_ptr<codecs::RowWriter> makeGifWriter(codecs::ByteSink& sink,
                                                               const codecs::PixelLayout& layout);

/// Writes a lossy WebP with EXIF, XMP and ICC. Takes 8-bit layouts, `quality` 0 to 100.
[[nodiscard]] std::unique_ptr<codecs::RowWriter> makeWebpWriter(codecs::ByteSink& sink,
                                                                const codecs::PixelLayout& layout,
                                                                const codecs::PictureMetadata& metadata, int quality);

}  // namespace sorvik::sips
