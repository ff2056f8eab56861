#include "sorvikdraw/dom/gradient_parser.h"

#include <string>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw {
namespace {

constexpr auto coordinate = ValueParser::parseCoordinate;

// Any fill may be written; one that is no colour is black.
dom::Color stopColor(const AttributeParser& attributes) {
    const auto fill = attributes.tryParse("stop-color", ValueParser::parseFill);
    const auto* const color = fill ? std::get_if<dom::Color>(&*fill) : nullptr;
    return color != nullptr ? *color : dom::Color{dom::ColorKeyword::black};
}

dom::GradientStop parseStop(const xml::Element& element, XMLParserOptions options) {
    const StyledAttributes attributes(element, options);
    return {
        .offset = attributes.parser().parseOptional("offset", ValueParser::parsePercentage).value_or(0.0F),
        .color = stopColor(attributes.parser()),
        .opacity = attributes.parser().parseOptional("stop-opacity", ValueParser::parsePercentage).value_or(1.0F),
    };
}

std::vector<dom::GradientStop> parseStops(const xml::Element& gradient, XMLParserOptions options) {
    std::vector<dom::GradientStop> stops;
    for (const xml::Element* child = gradient.firstChild; child != nullptr; child = child->nextSibling) {
        if (child->name != "stop") {
            continue;
        }
        if (stops.size() == limits::gradientStops) {
            throw XMLParserError::other("more than " + std::to_string(limits::gradientStops) + " stops in a gradient");
        }
        stops.push_back(parseStop(*child, options));
    }
    return stops;
}

std::vector<dom::Transform> parseGradientTransform(const AttributeParser& attributes) {
    constexpr std::string_view name = "gradientTransform";
    const auto text = attributes.tryParse(name, ValueParser::parseString);
    if (!text) {
        return {};
    }
    auto transform = ValueParser::parseTransform(*text);
    if (!transform) {
        throw XMLParserError(XMLParserError::Kind::invalid, std::string(name), std::string(*text));
    }
    return *std::move(transform);
}

// What both kinds have, behind their coordinates.
template <typename Gradient>
void parseCommon(Gradient& gradient, const xml::Element& element, const AttributeParser& attributes,
                 XMLParserOptions options) {
    gradient.stops = parseStops(element, options);
    gradient.gradientUnits = attributes.parseOptional("gradientUnits", ValueParser::parseRaw<dom::Units>);
    gradient.href = attributes.tryParse("xlink:href", ValueParser::parseUrl);
    gradient.gradientTransform = parseGradientTransform(attributes);
}

}  // namespace

dom::LinearGradient parseLinearGradient(const xml::Element& element, XMLParserOptions options) {
    const StyledAttributes styled(element, options);
    const AttributeParser& attributes = styled.parser();
    dom::LinearGradient gradient;
    gradient.id = attributes.parse("id", ValueParser::parseString);
    gradient.x1 = attributes.parseOptional("x1", coordinate);
    gradient.y1 = attributes.parseOptional("y1", coordinate);
    gradient.x2 = attributes.parseOptional("x2", coordinate);
    gradient.y2 = attributes.parseOptional("y2", coordinate);
    parseCommon(gradient, element, attributes, options);
    return gradient;
}

dom::RadialGradient parseRadialGradient(const xml::Element& element, XMLParserOptions options) {
    const StyledAttributes styled(element, options);
    const AttributeParser& attributes = styled.parser();
    dom::RadialGradient gradient;
    gradient.id = attributes.parse("id", ValueParser::parseString);
    gradient.r = attributes.parseOptional("r", coordinate);
    gradient.cx = attributes.parseOptional("cx", coordinate);
    gradient.cy = attributes.parseOptional("cy", coordinate);
    gradient.fr = attributes.parseOptional("fr", coordinate);
    gradient.fx = attributes.parseOptional("fx", coordinate);
    gradient.fy = attributes.parseOptional("fy", coordinate);
    parseCommon(gradient, element, attributes, options);
    return gradient;
}

}  // namespace sorvik::draw
