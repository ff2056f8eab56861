#pragma once

#include <vips/vips8>

namespace sorvik::sips {

/// What the pixels are to become.
struct ColourTarget {
    bool alpha = true;    ///< else transparency is laid on white
    bool deep = true;     ///< 16 bits stay 16 bits, else 8
    bool profile = true;  ///< an embedded profile of grey or RGB stays, else it is used up for sRGB
    bool grey = true;     ///< a profile of grey stays grey; else it is used up, as the target holds RGB only
};

/// Brings an image to 8 or 16 bits, grey or RGB, with at most one alpha channel. A profile stays on
/// the image (VIPS_META_ICC_NAME) only when it is sound and describes the pixels; CMYK, Lab and the
/// like become sRGB in any case.
[[nodiscard]] vips::VImage fitColours(vips::VImage image, const ColourTarget& target);

}  // namespace sorvik::sips
