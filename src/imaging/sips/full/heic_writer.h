#pragma once

#include <memory>
#include <optional>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::sips {

/// Writes a HEIC: 8 bits, or 10 for deep layouts; grey is written as RGB; with alpha, EXIF, XMP and
/// ICC. `quality` 0 to 100 on libheif's scale; without one no difference can be seen. `sink` must
/// outlive the writer. Throws Failure.
[[nodiscard]] std::unique_ptr<codecs::RowWriter> makeHeicWriter(codecs::ByteSink& sink,
                                                                const codecs::PixelLayout& layout,
                                                                const codecs::PictureMetadata& metadata,
                                                                std::optional<int> quality);

}  // namespace sorvik::sips
