#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "sorvikdraw/dom/boxed.h"
#include "sorvikdraw/dom/path_segment.h"
#include "sorvikdraw/dom/presentation_attributes.h"
#include "sorvikdraw/dom/url.h"

namespace sorvik::draw::dom {

struct GraphicsElement;
struct SVG;

/// The elements inside a container, in document order. They belong to the document (`SVG::elements`), so that
/// nothing is destroyed recursively however deep a document is.
using ChildElements = std::vector<const GraphicsElement*>;

struct Point {
    float x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

// Coordinates are in user units; an absent one was not written.
struct Line {
    float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};
struct Circle {
    std::optional<float> cx, cy;
    float r = 0;
};
struct Ellipse {
    std::optional<float> cx, cy;
    float rx = 0, ry = 0;
};
struct Rect {
    std::optional<float> x, y;
    float width = 0, height = 0;
    std::optional<float> rx, ry;
};
struct Polyline {
    std::vector<Point> points;
};
struct Polygon {
    std::vector<Point> points;
};
struct Path {
    std::vector<PathSegment> segments;
};
struct Text {
    std::optional<float> x, y;
    std::string value;  ///< UTF-8, trimmed, not empty
};
struct Image {
    URL href;
    std::optional<float> width, height, x, y;
};
struct Use {
    std::optional<float> x, y;
    URL href;
};
struct Group {
    ChildElements childElements;
};
struct Switch {
    ChildElements childElements;
};
struct Anchor {
    Boxed<URL> href;
    ChildElements childElements;
};
/// A nested "svg"; it belongs to the document.
struct NestedSVG {
    SVG* svg = nullptr;
};

/// Anything that can be drawn.
struct GraphicsElement {
    using Kind = std::variant<Line, Circle, Ellipse, Rect, Polyline, Polygon, Path, Text, Boxed<Image>, Use, Group,
                              Switch, Anchor, NestedSVG>;

    Kind kind;
    Boxed<std::string> id;
    Boxed<std::string> className;                              ///< the `class` attribute
    std::shared_ptr<const PresentationAttributes> attributes;  ///< from XML attributes; never null, shared by equals
    std::shared_ptr<const PresentationAttributes> style;       ///< from the `style` attribute; never null
};

/// What a container holds; empty for elements that are none.
[[nodiscard]] std::span<const GraphicsElement* const> childElements(const GraphicsElement& element);

}  // namespace sorvik::draw::dom
