#pragma once

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// The colour in sRGB, each component and the alpha brought to 0 to 1. What sRGB can't show is clipped.
[[nodiscard]] RGBA toSRGB(const RGBA& color);

}  // namespace sorvik::draw::layer_tree
