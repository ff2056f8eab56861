#pragma once

#include <cstddef>
#include <optional>

#include "sorvikdraw/dom/attribute_parser.h"
#include "sorvikdraw/dom/elements.h"
#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw {

/// What an element's name and own attributes say; containers are empty yet. Absent for names that are none of an
/// element that can be drawn, for text without any, and for "svg", which is a drawing of its own. Throws
/// XMLParserError.
[[nodiscard]] std::optional<dom::GraphicsElement::Kind> parseGraphicsElement(const xml::Element& element,
                                                                             const AttributeParser& attributes);

/// What it holds besides itself, in bytes.
[[nodiscard]] std::size_t heapBytes(const dom::GraphicsElement::Kind& kind);

}  // namespace sorvik::draw
