#pragma once

#include <cstdint>
#include <variant>

#include "sorvikdraw/dom/boxed.h"
#include "sorvikdraw/dom/color_keyword.h"
#include "sorvikdraw/dom/url.h"

namespace sorvik::draw::dom {

/// A colour as it is written; what it comes to is decided when the layers are built.
struct Color {
    struct RGBi {
        std::uint8_t r = 0, g = 0, b = 0;
        float a = 1;  ///< not brought to a range
        bool operator==(const RGBi&) const = default;
    };
    struct RGBf {
        float r = 0, g = 0, b = 0, a = 1;  ///< 0 to 1
        bool operator==(const RGBf&) const = default;
    };
    struct P3 {
        float r = 0, g = 0, b = 0;  ///< Display P3, not brought to a range
        bool operator==(const P3&) const = default;
    };
    struct Hex {
        std::uint8_t r = 0, g = 0, b = 0;
        bool operator==(const Hex&) const = default;
    };
    struct None {
        bool operator==(const None&) const = default;
    };
    struct CurrentColor {
        bool operator==(const CurrentColor&) const = default;
    };

    std::variant<ColorKeyword, RGBi, RGBf, P3, Hex, None, CurrentColor> value = None{};
    bool operator==(const Color&) const = default;
};

/// What a shape is painted with: a colour, or a reference to a gradient or pattern.
using Fill = std::variant<Boxed<URL>, Color>;

}  // namespace sorvik::draw::dom
