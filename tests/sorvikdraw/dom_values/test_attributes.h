#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "sorvikdraw/dom/presentation_attributes_parser.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw::testing {

using Pairs = std::vector<xml::Attribute>;

inline dom::PresentationAttributes presentation(const Pairs& element, const Pairs& style = {},
                                                XMLParserOptions options = noOptions) {
    return parsePresentationAttributes(element, style, options);
}

/// What a failing action throws, as "missing: name", "invalid: name=value", "invalid" or "other"; empty if it does not.
template <typename Action>
std::string errorOf(Action action) {
    using Kind = XMLParserError::Kind;
    try {
        action();
    } catch (const XMLParserError& error) {
        switch (error.kind()) {
            case Kind::missingAttribute:
                return "missing: " + error.name();
            case Kind::invalidAttribute:
                return "invalid: " + error.name() + "=" + error.reason();
            case Kind::invalid:
                return "invalid";
            case Kind::invalidElement:
            case Kind::invalidDocument:
            case Kind::other:
                return "other";
        }
    }
    return {};
}

/// `part`, `times` over.
inline std::string repeated(std::string_view part, std::size_t times) {
    std::string text;
    text.reserve(part.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        text += part;
    }
    return text;
}

}  // namespace sorvik::draw::testing
