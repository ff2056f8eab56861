#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "codecs/picture.h"

namespace sorvik::sips {

/// The bytes of `avif` with what it lacks of the EXIF, XMP and profile of `metadata`; its coded pixels
/// are not touched. Takes the plain files that encoders of single pictures write: boxes as in ISO/IEC
/// 14496-12, items as in ISO/IEC 23008-12. Throws Failure for anything else.
[[nodiscard]] std::vector<std::byte> avifWithMetadata(std::span<const std::byte> avif,
                                                      const codecs::PictureMetadata& metadata);

}  // namespace sorvik::sips
