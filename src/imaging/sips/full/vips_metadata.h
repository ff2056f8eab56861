#pragma once

#include <cstddef>
#include <span>
#include <vector>
#include <vips/vips8>

#include "codecs/picture.h"
#include "imaging/sips/content_kind.h"

namespace sorvik::sips {

/// What travels with a picture: as libvips found it, and as Exiv2 does where libvips doesn't look
/// (EXIF and IPTC of TIFF, the text chunks of PNG). `file` is the whole file.
[[nodiscard]] codecs::PictureMetadata metadataOf(const vips::VImage& image, ContentKind kind,
                                                 std::span<const std::byte> file);

/// The profile that hangs on an image; empty when there is none.
[[nodiscard]] std::vector<std::byte> profileOf(const vips::VImage& image);

}  // namespace sorvik::sips
