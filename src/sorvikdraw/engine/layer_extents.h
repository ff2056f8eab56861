#pragma once

#include <vector>

#include "sorvikdraw/engine/affine.h"
#include "sorvikdraw/engine/cg_types.h"

namespace sorvik::draw {

/// For each pushTransparencyLayer of the list, in its order, the box in device space beyond which nothing is painted
/// in that layer. Nowhere for a layer without paintings; without an end for one that paints all of its clip.
/// `base` is the user space that the list starts in.
[[nodiscard]] std::vector<Box> layerExtents(const CGCommands& commands, const Affine& base);

}  // namespace sorvik::draw
