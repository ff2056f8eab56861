#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sorvikdraw/dom/xml_element.h"
#include "sorvikdraw/dom/xml_parser_error.h"
#include "sorvikdraw/dom/xml_parser_options.h"

namespace sorvik::draw {

/// The pairs of a `style` attribute, as views into it, in the order written; of pairs with one name the last counts.
/// Throws XMLParserError: `invalid` for a name without ":", `other` for too many pairs.
[[nodiscard]] std::vector<xml::Attribute> splitStyle(std::string_view style);

/// The texts of one attribute.
struct AttributeTexts {
    std::optional<std::string_view> style, element;
};

/// What a lookup comes to.
template <typename Value>
struct Lookup {
    std::optional<Value> value;
    std::optional<std::string_view> invalidText;  ///< of an attribute that is there and does not parse
};

/// Reads one attribute: its text in `style` wins; under `skipInvalidAttributes` a bad one there gives way to the
/// element's own. `how` makes an optional value of a text.
template <typename How>
[[nodiscard]] auto lookUp(const AttributeTexts& texts, XMLParserOptions options, How&& how) {
    Lookup<typename decltype(how(std::string_view()))::value_type> found;
    if (texts.style) {
        found.value = how(*texts.style);
        if (found.value) {
            return found;
        }
        found.invalidText = texts.style;
        if (!contains(options, skipInvalidAttributes)) {
            return found;
        }
    }
    found.invalidText.reset();
    if (texts.element) {
        found.value = how(*texts.element);
        if (!found.value) {
            found.invalidText = texts.element;
        }
    }
    return found;
}

/// The attributes of an element, of its `style` attribute, or of both. It refers to the lists it is given.
/// Values are read by ValueParser's operations or any `std::optional<Value> how(std::string_view)`:
///
///     const float r = attributes.parse("r", ValueParser::parseCoordinate);
///     const std::optional<float> cx = attributes.parseOptional("cx", ValueParser::parseCoordinate);
class AttributeParser {
public:
    using Attributes = std::span<const xml::Attribute>;

    AttributeParser(XMLParserOptions options, Attributes element, Attributes style = {})
        : options_(options), element_(element), style_(style) {}

    /// The required form: throws `missingAttribute` or `invalidAttribute`.
    template <typename How>
    [[nodiscard]] auto parse(std::string_view name, How&& how) const {
        auto found = lookUp(texts(name), options_, how);
        if (!found.value) {
            fail(name, found.invalidText);
        }
        return *std::move(found.value);
    }

    /// The optional form: nothing for an absent attribute, and under `skipInvalidAttributes` for a bad one.
    template <typename How>
    [[nodiscard]] auto parseOptional(std::string_view name, How&& how) const {
        auto found = lookUp(texts(name), options_, how);
        if (found.invalidText && !contains(options_, skipInvalidAttributes)) {
            fail(name, found.invalidText);
        }
        return std::move(found.value);
    }

    /// Nothing whenever the required form would fail.
    template <typename How>
    [[nodiscard]] auto tryParse(std::string_view name, How&& how) const {
        return lookUp(texts(name), options_, how).value;
    }

private:
    [[nodiscard]] AttributeTexts texts(std::string_view name) const;
    [[noreturn]] static void fail(std::string_view name, std::optional<std::string_view> invalidText);

    XMLParserOptions options_;
    Attributes element_;
    Attributes style_;
};

/// Throws `invalidAttribute`.
[[noreturn]] void throwInvalidAttribute(std::string_view name, std::string_view text);

}  // namespace sorvik::draw
