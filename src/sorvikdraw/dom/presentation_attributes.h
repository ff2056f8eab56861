#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sorvikdraw/dom/boxed.h"
#include "sorvikdraw/dom/color.h"
#include "sorvikdraw/dom/transform.h"
#include "sorvikdraw/dom/url.h"

namespace sorvik::draw::dom {

enum class DisplayMode : std::uint8_t { none, inlined, block };
enum class FillRule : std::uint8_t { nonzero, evenodd };
enum class LineCap : std::uint8_t { butt, round, square };
enum class LineJoin : std::uint8_t { miter, round, bevel };
enum class TextAnchor : std::uint8_t { start, middle, end };
/// What the coordinates of a gradient or a pattern are relative to.
enum class Units : std::uint8_t { userSpaceOnUse, objectBoundingBox };

/// The attributes that an element, its `style` and a rule of a style sheet can set alike. An absent field says
/// nothing. Ratios are 0 to 1, lengths are user units.
struct PresentationAttributes {
    std::optional<float> opacity;
    std::optional<DisplayMode> display;
    std::optional<Color> color;
    std::optional<Fill> stroke;
    std::optional<float> strokeWidth;
    std::optional<float> strokeOpacity;
    std::optional<LineCap> strokeLineCap;
    std::optional<LineJoin> strokeLineJoin;
    Boxed<std::vector<float>> strokeDashArray;
    std::optional<Fill> fill;
    std::optional<float> fillOpacity;
    std::optional<FillRule> fillRule;
    Boxed<std::string> fontFamily;
    std::optional<float> fontSize;
    std::optional<TextAnchor> textAnchor;
    Boxed<std::vector<Transform>> transform;
    Boxed<URL> clipPath;
    std::optional<FillRule> clipRule;
    Boxed<URL> mask;
    Boxed<URL> filter;

    bool operator==(const PresentationAttributes&) const = default;
};

}  // namespace sorvik::draw::dom
