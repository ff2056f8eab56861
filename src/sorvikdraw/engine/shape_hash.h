#pragma once

#include <cstddef>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// Points or segments: what it costs to look at the shape.
[[nodiscard]] std::size_t length(const Shape& shape);

/// Equal shapes have equal hashes, but for zeros of different sign.
[[nodiscard]] std::size_t hash(const Shape& shape);

}  // namespace sorvik::draw::layer_tree
