#pragma once

#include <string_view>

#include "sorvikdraw/dom/attribute_parser.h"
#include "sorvikdraw/dom/svg.h"

namespace sorvik::draw {

/// Reads where an "svg" stands, its size and its view box. A size in percent gives way to the view box's. Throws
/// XMLParserError, also for a size that no integer holds.
void parseViewport(dom::SVG& svg, const AttributeParser& attributes);

/// Four coordinates. Throws XMLParserError for anything else.
[[nodiscard]] dom::ViewBox parseViewBox(std::string_view text);

}  // namespace sorvik::draw
