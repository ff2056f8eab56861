#pragma once

#include <cstddef>
#include <optional>

#include "sorvikdraw/dom/elements.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// The shape of an element; absent for those that have none of their own.
[[nodiscard]] std::optional<Shape> makeShape(const dom::GraphicsElement& element);

/// What a shape holds on the heap.
[[nodiscard]] std::size_t heapBytes(const Shape& shape);

}  // namespace sorvik::draw::layer_tree
