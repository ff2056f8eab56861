#pragma once

#include <cstdint>

namespace sorvik::draw {

/// A set of bits.
enum XMLParserOptions : std::int32_t {
    noOptions = 0,
    skipInvalidAttributes = 1,  ///< an attribute that does not parse counts as absent
    skipInvalidElements = 2,    ///< carried, not consulted: an invalid element ends the parse
};

[[nodiscard]] constexpr bool contains(XMLParserOptions set, XMLParserOptions option) {
    return (static_cast<std::int32_t>(set) & static_cast<std::int32_t>(option)) != 0;
}

}  // namespace sorvik::draw
