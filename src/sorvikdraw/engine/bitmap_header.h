#pragma once

#include <optional>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw {

struct PixelSize {
    int width = 0, height = 0;
};

/// What the header of an encoded picture says, both above 0. Absent when it is not a picture of its format.
[[nodiscard]] std::optional<PixelSize> pixelSize(const layer_tree::Bitmap& bitmap);

}  // namespace sorvik::draw
