#pragma once

#include "sorvikdraw/dom/styled_attributes.h"
#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw {

/// Read gradients with their stops. They throw XMLParserError, also for more stops than limits.h allows.
[[nodiscard]] dom::LinearGradient parseLinearGradient(const xml::Element& element, XMLParserOptions options);
[[nodiscard]] dom::RadialGradient parseRadialGradient(const xml::Element& element, XMLParserOptions options);

}  // namespace sorvik::draw
