#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "sorvikdraw/engine/cg_types.h"

namespace sorvik::draw {

/// Rows from the top down without gaps; a pixel is 0xAARRGGBB, colours multiplied by alpha.
struct Pixels {
    int width = 0, height = 0;
    std::unique_ptr<std::uint32_t[]> values;
    bool opaque = false;
};

/// Decodes a picture whole. Nothing when it is damaged, ends early or has another size than its header said to
/// `image`'s maker. Colours are taken for sRGB.
[[nodiscard]] std::optional<Pixels> decodeBitmap(const CGImage& image);

/// Each pixel the mean of `columns` by `rows` of the picture's; the last ones of what is left.
[[nodiscard]] Pixels reduced(const Pixels& pixels, int columns, int rows);

}  // namespace sorvik::draw
