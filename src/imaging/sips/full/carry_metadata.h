#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "codecs/picture.h"
#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

/// Puts EXIF, XMP and the profile of an intermediate into a WebP where it lacks them, replacing the
/// file whole; its pixels are not encoded anew. Throws Failure.
[[nodiscard]] Status carryMetadata(const CarryRequest& request);

/// The bytes of `webp` with what it lacks of `metadata`, its own EXIF saying that it is upright.
/// Throws Failure when it is no WebP.
[[nodiscard]] std::vector<std::byte> webpWithMetadata(std::span<const std::byte> webp,
                                                      const codecs::PictureMetadata& metadata);

}  // namespace sorvik::sips
