#include "sorvikdraw/dom/graphics_element_parser.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "sorvikdraw/dom/value_parser.h"
#include "sorvikdraw/dom/white_space.h"

namespace sorvik::draw {
namespace {

using Kind = dom::GraphicsElement::Kind;
using ParsedKind = std::optional<Kind>;

constexpr auto coordinate = ValueParser::parseCoordinate;

ParsedKind parseGroup(const xml::Element&, const AttributeParser&) { return dom::Group(); }

ParsedKind parseSwitch(const xml::Element&, const AttributeParser&) { return dom::Switch(); }

ParsedKind parseLine(const xml::Element&, const AttributeParser& attributes) {
    return dom::Line{
        .x1 = attributes.parse("x1", coordinate),
        .y1 = attributes.parse("y1", coordinate),
        .x2 = attributes.parse("x2", coordinate),
        .y2 = attributes.parse("y2", coordinate),
    };
}

ParsedKind parseCircle(const xml::Element&, const AttributeParser& attributes) {
    return dom::Circle{
        .cx = attributes.parseOptional("cx", coordinate),
        .cy = attributes.parseOptional("cy", coordinate),
        .r = attributes.parse("r", coordinate),
    };
}

ParsedKind parseEllipse(const xml::Element&, const AttributeParser& attributes) {
    return dom::Ellipse{
        .cx = attributes.parseOptional("cx", coordinate),
        .cy = attributes.parseOptional("cy", coordinate),
        .rx = attributes.parse("rx", coordinate),
        .ry = attributes.parse("ry", coordinate),
    };
}

ParsedKind parseRect(const xml::Element&, const AttributeParser& attributes) {
    dom::Rect rect;
    rect.width = attributes.parse("width", coordinate);
    rect.height = attributes.parse("height", coordinate);
    rect.x = attributes.parseOptional("x", coordinate);
    rect.y = attributes.parseOptional("y", coordinate);
    rect.rx = attributes.parseOptional("rx", coordinate);
    rect.ry = attributes.parseOptional("ry", coordinate);
    return rect;
}

ParsedKind parsePolyline(const xml::Element&, const AttributeParser& attributes) {
    return dom::Polyline{attributes.parse("points", ValueParser::parsePoints)};
}

ParsedKind parsePolygon(const xml::Element&, const AttributeParser& attributes) {
    return dom::Polygon{attributes.parse("points", ValueParser::parsePoints)};
}

ParsedKind parsePath(const xml::Element&, const AttributeParser& attributes) {
    dom::Path path{attributes.parse("d", ValueParser::parsePathSegments)};
    path.segments.shrink_to_fit();
    return path;
}

ParsedKind parseText(const xml::Element& element, const AttributeParser& attributes) {
    const std::string_view text = trimmed(element.innerText.value_or(""));
    if (text.empty()) {
        return std::nullopt;
    }
    return dom::Text{
        .x = attributes.parseOptional("x", coordinate),
        .y = attributes.parseOptional("y", coordinate),
        .value = std::string(text),
    };
}

ParsedKind parseAnchor(const xml::Element&, const AttributeParser& attributes) {
    dom::Anchor anchor;
    if (auto href = attributes.parseOptional("href", ValueParser::parseUrl)) {
        anchor.href = *std::move(href);
    }
    return anchor;
}

ParsedKind parseUse(const xml::Element&, const AttributeParser& attributes) {
    dom::Use use;
    use.href = attributes.parse("xlink:href", ValueParser::parseUrl);
    use.x = attributes.parseOptional("x", coordinate);
    use.y = attributes.parseOptional("y", coordinate);
    return use;
}

ParsedKind parseImage(const xml::Element&, const AttributeParser& attributes) {
    dom::Image image;
    image.href = attributes.parse("xlink:href", ValueParser::parseUrl);
    image.x = attributes.parseOptional("x", coordinate);
    image.y = attributes.parseOptional("y", coordinate);
    image.width = attributes.parseOptional("width", coordinate);
    image.height = attributes.parseOptional("height", coordinate);
    return Boxed(std::move(image));
}

struct Row {
    std::string_view name;
    ParsedKind (*parse)(const xml::Element&, const AttributeParser&);
};
constexpr std::array rows{
    Row{"g", parseGroup},         Row{"line", parseLine}, Row{"circle", parseCircle},
    Row{"ellipse", parseEllipse}, Row{"rect", parseRect}, Row{"polyline", parsePolyline},
    Row{"polygon", parsePolygon}, Row{"path", parsePath}, Row{"text", parseText},
    Row{"a", parseAnchor},        Row{"use", parseUse},   Row{"switch", parseSwitch},
    Row{"image", parseImage},
};
static_assert(rows.size() + 1 == std::variant_size_v<Kind>);  // and a nested "svg"

std::size_t capacityOf(const dom::URL& url) { return url.absoluteString.capacity(); }

struct HeapBytes {
    std::size_t operator()(const dom::Polyline& line) const { return line.points.capacity() * sizeof(dom::Point); }
    std::size_t operator()(const dom::Polygon& polygon) const { return polygon.points.capacity() * sizeof(dom::Point); }
    std::size_t operator()(const dom::Path& path) const { return path.segments.capacity() * sizeof(dom::PathSegment); }
    std::size_t operator()(const dom::Text& text) const { return text.value.capacity(); }
    std::size_t operator()(const Boxed<dom::Image>& image) const {
        return sizeof(dom::Image) + capacityOf(image->href);
    }
    std::size_t operator()(const dom::Use& use) const { return capacityOf(use.href); }
    std::size_t operator()(const dom::Anchor& anchor) const {
        return anchor.href ? sizeof(dom::URL) + capacityOf(*anchor.href) : 0;
    }
    template <typename NothingMore>
    std::size_t operator()(const NothingMore&) const {
        return 0;
    }
};

}  // namespace

std::optional<dom::GraphicsElement::Kind> parseGraphicsElement(const xml::Element& element,
                                                               const AttributeParser& attributes) {
    const auto row = std::ranges::find(rows, element.name, &Row::name);
    return row == rows.end() ? std::nullopt : row->parse(element, attributes);
}

std::size_t heapBytes(const dom::GraphicsElement::Kind& kind) { return std::visit(HeapBytes(), kind); }

}  // namespace sorvik::draw
