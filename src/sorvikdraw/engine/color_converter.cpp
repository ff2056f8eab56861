#include "sorvikdraw/engine/color_converter.h"

#include <algorithm>

#include "sorvikdraw/engine/p3_color.h"

namespace sorvik::draw::layer_tree {
namespace {

struct Luminance {
    Color operator()(NoColor none) const { return none; }
    Color operator()(const RGBA& color) const {
        const RGBA srgb = toSRGB(color);
        return Gray{0, (0.2126F * srgb.r + 0.7152F * srgb.g + 0.0722F * srgb.b) * srgb.a};
    }
    Color operator()(const Gray& gray) const {
        return Gray{0, std::clamp(gray.white, 0.0F, 1.0F) * std::clamp(gray.a, 0.0F, 1.0F)};
    }
};

}  // namespace

Color LuminanceColorConverter::createColor(const Color& color) { return std::visit(Luminance{}, color); }

Color converted(const Color& color, const ColorConverter& converter) {
    return std::visit([&color](const auto& chosen) { return chosen.createColor(color); }, converter);
}

Gradient converted(const Gradient& gradient, const ColorConverter& converter) {
    Gradient result = gradient;
    for (Gradient::Stop& stop : result.stops) {
        stop.color = converted(stop.color, converter);
    }
    return result;
}

}  // namespace sorvik::draw::layer_tree
