#include "sorvikdraw/dom/definition_parser.h"

#include <string>

#include "sorvikdraw/dom/presentation_attributes_parser.h"
#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw {
namespace {

std::string requiredId(const AttributeParser& attributes) {
    return std::string(attributes.parse("id", ValueParser::parseString));
}

}  // namespace

dom::ClipPath parseClipPath(const xml::Element& element, XMLParserOptions options) {
    const StyledAttributes styled(element, options);
    return {.id = requiredId(styled.parser()), .childElements = {}};
}

dom::Mask parseMask(const xml::Element& element, XMLParserOptions options) {
    const StyledAttributes styled(element, options);
    dom::Mask mask;
    mask.id = requiredId(styled.parser());
    mask.className = styled.parser().parseOptional("class", ValueParser::parseString);
    mask.attributes = parsePresentationAttributes(styled.element(), {}, options);
    mask.style = parsePresentationAttributes(styled.style(), {}, options);
    return mask;
}

dom::Pattern parsePattern(const xml::Element& element, XMLParserOptions options) {
    const StyledAttributes styled(element, options);
    const AttributeParser& attributes = styled.parser();
    dom::Pattern pattern;
    pattern.id = requiredId(attributes);
    pattern.width = attributes.parse("width", ValueParser::parseCoordinate);
    pattern.height = attributes.parse("height", ValueParser::parseCoordinate);
    pattern.x = attributes.parseOptional("x", ValueParser::parseCoordinate);
    pattern.y = attributes.parseOptional("y", ValueParser::parseCoordinate);
    pattern.patternUnits = attributes.parseOptional("patternUnits", ValueParser::parseRaw<dom::Units>);
    pattern.patternContentUnits = attributes.parseOptional("patternContentUnits", ValueParser::parseRaw<dom::Units>);
    return pattern;
}

dom::Filter parseFilter(const xml::Element& element, XMLParserOptions options) {
    const StyledAttributes styled(element, options);
    dom::Filter filter;
    filter.id = requiredId(styled.parser());
    for (const xml::Element* child = element.firstChild; child != nullptr; child = child->nextSibling) {
        if (child->name == "feGaussianBlur") {
            const StyledAttributes effect(*child, options);
            filter.effects.push_back({effect.parser().parse("stdDeviation", ValueParser::parseFloat)});
        }
    }
    return filter;
}

}  // namespace sorvik::draw
