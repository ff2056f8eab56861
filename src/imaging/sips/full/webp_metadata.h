#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "codecs/picture.h"

namespace sorvik::sips {

/// The bytes of `webp` with what it lacks of the EXIF, XMP and profile of `metadata`, its own EXIF
/// saying that it is upright; its pixels are not encoded anew. Throws Failure when it is no WebP.
[[nodiscard]] std::vector<std::byte> webpWithMetadata(std::span<const std::byte> webp,
                                                      const codecs::PictureMetadata& metadata);

/// The same, its own EXIF left as it is.
[[nodiscard]] std::vector<std::byte> webpWithAdded(std::span<const std::byte> webp,
                                                   const codecs::PictureMetadata& metadata);

}  // namespace sorvik::sips
