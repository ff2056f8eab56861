#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "codecs/picture.h"

namespace sorvik::sips {

/// The Orientation of an EXIF block (a TIFF stream), 1 to 8; 1 when there is none or it makes no sense.
[[nodiscard]] int orientationOf(std::span<const std::byte> exif);

/// Makes the metadata of a picture whose pixels have been turned upright, from `orientation`, say so:
/// Orientation 1 in EXIF and XMP, the sides in EXIF as they are now, and no embedded thumbnail that
/// would still be lying.
void declareUpright(codecs::PictureMetadata& metadata, int orientation);

}  // namespace sorvik::sips
