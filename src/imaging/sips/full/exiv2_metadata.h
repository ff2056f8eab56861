#pragma once

#include <cstddef>
#include <span>

#include "codecs/picture.h"

namespace sorvik::sips {

/// EXIF, IPTC and XMP of a picture file of any kind that Exiv2 knows; empty where it finds none or
/// fails. The profile is not looked for.
[[nodiscard]] codecs::PictureMetadata readWithExiv2(std::span<const std::byte> file);

}  // namespace sorvik::sips
