#pragma once

#include <vips/vips8>

#include "codecs/picture.h"
#include "imaging/sips/files.h"
#include "imaging/sips/full/colour.h"

namespace sorvik::sips {

/// An upright picture in the colours asked for, whose pixels are computed when they are asked for,
/// from the top down only.
struct DecodedPicture {
    vips::VImage image;
    codecs::PictureMetadata metadata;
};

/// `input` must outlive the picture. Throws Failure, and vips::VError for damage.
[[nodiscard]] DecodedPicture decodePicture(const InputFile& input, ColourTarget target);

}  // namespace sorvik::sips
