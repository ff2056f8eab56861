#pragma once

#include <memory>
#include <optional>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::sips {

/// What codes the pixels in a HEIF file: HEVC makes it a HEIC, AV1 an AVIF.
enum class HeifCodec { hevc, av1 };

/// Writes 8 bits, or 10 for deep layouts; grey is written as RGB; with alpha, EXIF, XMP and ICC.
/// `quality` 0 to 100 on libheif's scale; without one the difference can't be seen. `sink` must
/// outlive the writer. Throws Failure.
[[nodiscard]] std::unique_ptr<codecs::RowWriter> makeHeifWriter(HeifCodec codec, codecs::ByteSink& sink,
                                                                const codecs::PixelLayout& layout,
                                                                const codecs::PictureMetadata& metadata,
                                                                std::optional<int> quality);

}  // namespace sorvik::sips
