#include "sorvikdraw/engine/color_resolution.h"

#include <cstdint>

namespace sorvik::draw::layer_tree {
namespace {

Color ofBytes(std::uint32_t r, std::uint32_t g, std::uint32_t b, float a) {
    constexpr float most = 255.0F;
    return RGBA{static_cast<float>(r) / most, static_cast<float>(g) / most, static_cast<float>(b) / most, a,
                ColorSpace::srgb};
}

struct Resolving {
    Color operator()(dom::ColorKeyword keyword) const {
        const std::uint32_t rgb = dom::rgbOf(keyword);
        return ofBytes(rgb >> 16U & 0xFFU, rgb >> 8U & 0xFFU, rgb & 0xFFU, 1);
    }
    Color operator()(const dom::Color::RGBi& color) const { return ofBytes(color.r, color.g, color.b, color.a); }
    Color operator()(const dom::Color::RGBf& color) const {
        return RGBA{color.r, color.g, color.b, color.a, ColorSpace::srgb};
    }
    Color operator()(const dom::Color::P3& color) const { return RGBA{color.r, color.g, color.b, 1, ColorSpace::p3}; }
    Color operator()(const dom::Color::Hex& color) const { return ofBytes(color.r, color.g, color.b, 1); }
    Color operator()(const dom::Color::None&) const { return NoColor{}; }
    Color operator()(const dom::Color::CurrentColor&) const { return NoColor{}; }  // there is none further out
};

struct Fading {
    float opacity;

    Color operator()(NoColor none) const { return none; }
    template <typename Visible>
    Color operator()(Visible color) const {
        color.a *= opacity;
        return color.a > 0 ? Color{color} : Color{NoColor{}};
    }
};

}  // namespace

Color resolved(const dom::Color& color, const dom::Color& current) {
    const bool isCurrent = std::holds_alternative<dom::Color::CurrentColor>(color.value);
    return std::visit(Resolving{}, isCurrent ? current.value : color.value);
}

Color faded(const Color& color, float opacity) { return std::visit(Fading{opacity}, color); }

}  // namespace sorvik::draw::layer_tree
