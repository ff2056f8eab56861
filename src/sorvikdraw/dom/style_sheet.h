#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <string>

#include "sorvikdraw/dom/presentation_attributes.h"

namespace sorvik::draw::dom {

/// The rules of one "style" element.
struct StyleSheet {
    struct Selector {
        enum class Kind : std::uint8_t { id, element, className };
        Kind kind = Kind::id;
        std::string name;
        auto operator<=>(const Selector&) const = default;
    };

    std::map<Selector, PresentationAttributes> attributes;
};

}  // namespace sorvik::draw::dom
