#pragma once

#include <string_view>

namespace sorvik::draw {

inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

[[nodiscard]] constexpr bool isWhiteSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Without the `unwanted` characters at either end.
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text, std::string_view unwanted = whiteSpace) {
    const auto first = text.find_first_not_of(unwanted);
    return first == std::string_view::npos ? text.substr(0, 0)
                                           : text.substr(first, text.find_last_not_of(unwanted) - first + 1);
}

/// Without spaces and tabs at either end; line feeds stay.
[[nodiscard]] constexpr std::string_view trimmedOfBlanks(std::string_view text) { return trimmed(text, " \t"); }

}  // namespace sorvik::draw
