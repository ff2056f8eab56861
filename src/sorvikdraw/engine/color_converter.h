#pragma once

#include <variant>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// Leaves colours as they are.
struct DefaultColorConverter {
    [[nodiscard]] static Color createColor(const Color& color) { return color; }
};

/// Turns a colour into black that is as opaque as the colour is bright, since a mask lets through what its alpha lets
/// through. No colour stays no colour.
struct LuminanceColorConverter {
    [[nodiscard]] static Color createColor(const Color& color);
};

using ColorConverter = std::variant<DefaultColorConverter, LuminanceColorConverter>;

[[nodiscard]] Color converted(const Color& color, const ColorConverter& converter);
[[nodiscard]] Gradient converted(const Gradient& gradient, const ColorConverter& converter);

}  // namespace sorvik::draw::layer_tree
