#include "sorvikdraw/dom/attribute_parser.h"

#include <algorithm>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/list_limit.h"
#include "sorvikdraw/dom/scanner.h"

namespace sorvik::draw {

namespace {

// From the end: of several with one name the last counts.
std::optional<std::string_view> lastText(std::span<const xml::Attribute> attributes, std::string_view name) {
    const auto last = std::find_if(attributes.rbegin(), attributes.rend(),
                                   [name](const xml::Attribute& attribute) { return attribute.name == name; });
    return last == attributes.rend() ? std::nullopt : std::optional(last->value);
}

}  // namespace

std::vector<xml::Attribute> splitStyle(std::string_view style) {
    static constexpr CharacterSet colon(":");
    static constexpr CharacterSet semicolon(";");
    Scanner scanner(style);
    std::vector<xml::Attribute> pairs;
    while (!scanner.isEOF()) {
        const auto name = scanner.scanUpTo(colon);
        if (!name || !scanner.scanString(":")) {
            throw XMLParserError::invalid();
        }
        const auto value = scanner.scanUpTo(semicolon);
        scanner.scanString(";");
        requireRoom(pairs.size(), limits::listItems, "pairs in a style");
        pairs.push_back({trimmedOfBlanks(*name), trimmedOfBlanks(value.value_or(std::string_view()))});
    }
    return pairs;
}

AttributeTexts AttributeParser::texts(std::string_view name) const {
    return {lastText(style_, name), lastText(element_, name)};
}

void AttributeParser::fail(std::string_view name, std::optional<std::string_view> invalidText) {
    if (invalidText) {
        throwInvalidAttribute(name, *invalidText);
    }
    throw XMLParserError::missingAttribute(std::string(name));
}

void throwInvalidAttribute(std::string_view name, std::string_view text) {
    throw XMLParserError::invalidAttribute(std::string(name), std::string(text));
}

}  // namespace sorvik::draw
