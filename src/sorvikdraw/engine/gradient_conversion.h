#pragma once

#include <memory>
#include <vector>

#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

// `stops` are the gradient's own or those of the one that it refers to. With fewer than two there is no gradient: null.
[[nodiscard]] std::shared_ptr<const LinearGradient> makeGradient(const dom::LinearGradient& gradient,
                                                                 const std::vector<dom::GradientStop>& stops);
[[nodiscard]] std::shared_ptr<const RadialGradient> makeGradient(const dom::RadialGradient& gradient,
                                                                 const std::vector<dom::GradientStop>& stops);

}  // namespace sorvik::draw::layer_tree
