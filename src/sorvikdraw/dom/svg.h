#pragma once

#include <deque>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sorvikdraw/dom/elements.h"
#include "sorvikdraw/dom/style_sheet.h"
#include "sorvikdraw/dom/xml_parser_options.h"

namespace sorvik::draw::dom {

struct GradientStop {
    float offset = 0;  ///< 0 to 1
    Color color;
    float opacity = 1;  ///< 0 to 1
    bool operator==(const GradientStop&) const = default;
};
struct LinearGradient {
    std::string id;
    std::optional<float> x1, y1, x2, y2;
    std::vector<GradientStop> stops;
    std::optional<Units> gradientUnits;
    std::vector<Transform> gradientTransform;
    std::optional<URL> href;
};
struct RadialGradient {
    std::string id;
    std::optional<float> r, cx, cy, fr, fx, fy;
    std::vector<GradientStop> stops;
    std::optional<Units> gradientUnits;
    std::vector<Transform> gradientTransform;
    std::optional<URL> href;
};
struct ClipPath {
    std::string id;
    ChildElements childElements;
};
struct Pattern {
    std::string id;
    std::optional<float> x, y;
    float width = 0, height = 0;
    std::optional<Units> patternUnits, patternContentUnits;
    ChildElements childElements;
};
struct Mask {
    std::string id;
    std::optional<std::string> className;
    PresentationAttributes attributes, style;
    ChildElements childElements;
};
struct Filter {
    /// Its one kind: a Gaussian blur.
    struct Effect {
        float stdDeviation = 0;
        bool operator==(const Effect&) const = default;
    };
    std::string id;
    std::vector<Effect> effects;
};

/// What a document refers to by id. Lists are in document order and the first of an id counts.
struct Defs {
    std::vector<ClipPath> clipPaths;
    std::vector<LinearGradient> linearGradients;
    std::vector<RadialGradient> radialGradients;
    std::vector<Mask> masks;
    std::vector<Pattern> patterns;
    std::vector<Filter> filters;
    std::map<std::string, const GraphicsElement*, std::less<>> elements;
};

struct ViewBox {
    float x = 0, y = 0, width = 0, height = 0;
    bool operator==(const ViewBox&) const = default;
};

/// A document, or an "svg" within one.
struct SVG {
    SVG() = default;
    SVG(SVG&&) noexcept = default;
    SVG& operator=(SVG&&) noexcept = default;
    SVG(const SVG&) = delete;
    SVG& operator=(const SVG&) = delete;
    ~SVG() = default;

    std::optional<float> x, y;
    int width = 0, height = 0;  ///< user units
    std::optional<ViewBox> viewBox;
    ChildElements children;
    std::vector<StyleSheet> styles;  ///< in document order
    Defs defs;
    /// Both the `style` attribute's values and the XML attributes, the former winning.
    PresentationAttributes attributes;

    /// Every element and nested "svg" of the document, owned by its root; empty in a nested one.
    std::deque<GraphicsElement> elements;
    std::deque<SVG> nested;

    /// Entry points. They throw XMLParserError.
    [[nodiscard]] static SVG parse(const std::filesystem::path& file, XMLParserOptions options = skipInvalidElements);
    [[nodiscard]] static SVG parseData(std::string_view bytes, XMLParserOptions options = skipInvalidElements);
    [[nodiscard]] static SVG parseXML(std::string_view xml, XMLParserOptions options = skipInvalidElements);
    /// A file of the folder that stands in a bundle's place.
    [[nodiscard]] static SVG parseNamed(std::string_view name, const std::filesystem::path& bundle,
                                        XMLParserOptions options = skipInvalidElements);

    /// The definition of that id, else the first element with it, a parent before its children; null if there is none.
    /// A walk of the document, unless indexIds() was called since it changed.
    [[nodiscard]] const GraphicsElement* firstGraphicsElement(std::string_view id) const;

    /// Makes firstGraphicsElement quick; the parser does so for documents that use elements again.
    void indexIds();
    std::optional<std::unordered_map<std::string_view, const GraphicsElement*>> firstById;
};

}  // namespace sorvik::draw::dom
