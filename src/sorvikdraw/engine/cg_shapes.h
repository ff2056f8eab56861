#pragma once

#include "sorvikdraw/engine/cg_path.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw {

/// The outline of a shape, no larger in memory than it must be. A rectangle's corners are at most half its sides;
/// what has no points gives an empty path.
[[nodiscard]] CGPath makePath(const layer_tree::Shape& shape);

}  // namespace sorvik::draw
