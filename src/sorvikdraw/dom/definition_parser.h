#pragma once

#include "sorvikdraw/dom/styled_attributes.h"
#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw {

/// Read what is referred to by id, without the children that are elements themselves. They throw XMLParserError.
[[nodiscard]] dom::ClipPath parseClipPath(const xml::Element& element, XMLParserOptions options);
[[nodiscard]] dom::Mask parseMask(const xml::Element& element, XMLParserOptions options);
[[nodiscard]] dom::Pattern parsePattern(const xml::Element& element, XMLParserOptions options);
[[nodiscard]] dom::Filter parseFilter(const xml::Element& element, XMLParserOptions options);

}  // namespace sorvik::draw
