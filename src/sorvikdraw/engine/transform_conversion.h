#pragma once

#include <span>
#include <vector>

#include "sorvikdraw/dom/transform.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// A transform list with angles in radians, skews as matrices and turns around a point as three transforms.
[[nodiscard]] std::vector<Transform> makeTransforms(std::span<const dom::Transform> transforms);

/// All of a list in one; the last is applied to a point first.
[[nodiscard]] Matrix product(std::span<const Transform> transforms);

}  // namespace sorvik::draw::layer_tree
