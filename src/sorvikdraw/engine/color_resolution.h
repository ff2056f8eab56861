#pragma once

#include "sorvikdraw/dom/color.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// What a colour comes to where `current` is the current colour; none where that is the current colour itself.
[[nodiscard]] Color resolved(const dom::Color& color, const dom::Color& current);

/// With its alpha multiplied by `opacity`; none where nothing would be seen.
[[nodiscard]] Color faded(const Color& color, float opacity);

}  // namespace sorvik::draw::layer_tree
