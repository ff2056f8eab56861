#pragma once

#include <cstddef>
#include <string>

#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw {

/// To be called before an item joins a list that holds `size` of them.
inline void requireRoom(std::size_t size, std::size_t limit, const char* what) {
    if (size >= limit) {
        throw XMLParserError::other("more than " + std::to_string(limit) + " " + what);
    }
}

}  // namespace sorvik::draw
