#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "sorvikdraw/dom/presentation_attributes.h"
#include "sorvikdraw/dom/xml_element.h"
#include "sorvikdraw/dom/xml_parser_options.h"

namespace sorvik::draw {

/// The place of a presentation attribute's field, 0 to 19, by its name in a document; absent for other names.
[[nodiscard]] std::optional<std::size_t> presentationAttributeIndex(std::string_view name);

/// The name in a document of the field at that place.
[[nodiscard]] std::string_view presentationAttributeName(std::size_t field);

/// Whether any of these is a presentation attribute.
[[nodiscard]] bool anyPresentationAttribute(std::span<const xml::Attribute> attributes);

/// Reads all of them; pairs of `style` win over the element's own. Other names are passed over. Throws XMLParserError
/// for the first bad one in the order of the fields.
[[nodiscard]] dom::PresentationAttributes parsePresentationAttributes(std::span<const xml::Attribute> element,
                                                                      std::span<const xml::Attribute> style,
                                                                      XMLParserOptions options);

}  // namespace sorvik::draw
