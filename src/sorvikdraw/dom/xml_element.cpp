#include "sorvikdraw/dom/xml_element.h"

#include <algorithm>

namespace sorvik::draw::xml {

std::optional<std::string_view> Element::attribute(std::string_view wanted) const {
    const auto found = std::ranges::find(attributes, wanted, &Attribute::name);
    return found == attributes.end() ? std::nullopt : std::optional(found->value);
}

}  // namespace sorvik::draw::xml
