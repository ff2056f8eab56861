#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "sorvikdraw/dom/color.h"
#include "sorvikdraw/dom/elements.h"
#include "sorvikdraw/dom/path_segment.h"
#include "sorvikdraw/dom/raw_values.h"
#include "sorvikdraw/dom/transform.h"
#include "sorvikdraw/dom/url.h"
#include "sorvikdraw/dom/white_space.h"

namespace sorvik::draw {

/// Makes values of the texts of attributes. An absent result is the error `invalid`, which the lookup of
/// AttributeParser throws with the attribute's name. Lists beyond the limits throw XMLParserError::other.
struct ValueParser {
    /// What stands behind the number or the word is not looked at.
    static std::optional<float> parseFloat(std::string_view text);
    static std::optional<float> parsePercentage(std::string_view text);  ///< a ratio from 0 to 1
    static std::optional<float> parseCoordinate(std::string_view text);  ///< user units
    static std::optional<std::int32_t> parseLength(std::string_view text);
    static std::optional<bool> parseBool(std::string_view text);

    static std::optional<std::vector<float>> parseFloats(std::string_view text);
    static std::optional<std::vector<dom::Point>> parsePoints(std::string_view text);
    static std::optional<std::vector<dom::Transform>> parseTransform(std::string_view text);
    static std::optional<std::vector<dom::PathSegment>> parsePathSegments(std::string_view text);

    static std::optional<dom::Fill> parseFill(std::string_view text);
    static std::optional<dom::Color> parseColor(std::string_view text);

    static std::optional<dom::URL> parseUrl(std::string_view text);
    static std::optional<dom::URL> parseUrlSelector(std::string_view text);  ///< "url(...)" and nothing more

    template <typename Enumeration>
    static std::optional<Enumeration> parseRaw(std::string_view text);
    static std::optional<std::string_view> parseString(std::string_view text) { return text; }
};

template <typename Enumeration>
std::optional<Enumeration> ValueParser::parseRaw(std::string_view text) {
    static_assert(!rawValues<Enumeration>.empty());
    const auto wanted = trimmedOfBlanks(text);
    for (const auto& row : rawValues<Enumeration>) {
        if (row.text == wanted) {
            return row.value;
        }
    }
    return std::nullopt;
}

}  // namespace sorvik::draw
