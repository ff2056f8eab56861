#include "sorvikdraw/dom/viewport_parser.h"

#include <limits>
#include <string>

#include "sorvikdraw/dom/scanner.h"
#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw {
namespace {

constexpr auto coordinate = ValueParser::parseCoordinate;

std::optional<float> parseSide(std::string_view name, const AttributeParser& attributes) {
    if (attributes.tryParse(name, ValueParser::parsePercentage)) {
        return std::nullopt;
    }
    return attributes.parseOptional(name, coordinate);
}

// Cuts off the fraction.
int integral(std::string_view name, float side) {
    constexpr auto beyond = static_cast<float>(std::numeric_limits<int>::max());  // rounded up to a power of two
    if (side < beyond && side >= -beyond) {
        return static_cast<int>(side);
    }
    throwInvalidAttribute(name, std::to_string(side));
}

int side(std::string_view name, std::optional<float> written, const std::optional<dom::ViewBox>& viewBox,
         float dom::ViewBox::*ofViewBox) {
    if (!written && !viewBox) {
        throw XMLParserError::missingAttribute(std::string(name));
    }
    return integral(name, written ? *written : (*viewBox).*ofViewBox);
}

}  // namespace

void parseViewport(dom::SVG& svg, const AttributeParser& attributes) {
    const auto width = parseSide("width", attributes);
    const auto height = parseSide("height", attributes);
    if (const auto text = attributes.parseOptional("viewBox", ValueParser::parseString)) {
        svg.viewBox = parseViewBox(*text);
    }
    svg.width = side("width", width, svg.viewBox, &dom::ViewBox::width);
    svg.height = side("height", height, svg.viewBox, &dom::ViewBox::height);
    svg.x = attributes.parseOptional("x", coordinate);
    svg.y = attributes.parseOptional("y", coordinate);
}

dom::ViewBox parseViewBox(std::string_view text) {
    Scanner scanner(text);
    dom::ViewBox box;
    for (float* const number : {&box.x, &box.y, &box.width, &box.height}) {
        const auto scanned = scanner.scanCoordinate();
        if (!scanned) {
            throw XMLParserError(XMLParserError::Kind::invalid, "viewBox", std::string(text));
        }
        *number = *scanned;
        scanner.scanString(",");
    }
    if (!scanner.isEOF()) {
        throw XMLParserError(XMLParserError::Kind::invalid, "viewBox", std::string(text));
    }
    return box;
}

}  // namespace sorvik::draw
