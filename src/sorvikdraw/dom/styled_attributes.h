#pragma once

#include <string_view>
#include <vector>

#include "sorvikdraw/dom/attribute_parser.h"
#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw {

/// An element's attributes together with the pairs of its `style`, which win. Good as long as the tree.
class StyledAttributes {
public:
    /// Throws XMLParserError for a `style` that can't be split.
    StyledAttributes(const xml::Element& element, XMLParserOptions options)
        : styleText_(element.attribute("style").value_or("")),
          style_(splitStyle(styleText_)),
          element_(element.attributes),
          parser_(options, element_, style_) {}
    StyledAttributes(const StyledAttributes&) = delete;
    StyledAttributes& operator=(const StyledAttributes&) = delete;
    ~StyledAttributes() = default;

    [[nodiscard]] std::string_view styleText() const { return styleText_; }
    [[nodiscard]] std::span<const xml::Attribute> style() const { return style_; }
    [[nodiscard]] std::span<const xml::Attribute> element() const { return element_; }
    [[nodiscard]] const AttributeParser& parser() const { return parser_; }

private:
    std::string_view styleText_;
    std::vector<xml::Attribute> style_;
    std::span<const xml::Attribute> element_;
    AttributeParser parser_;
};

}  // namespace sorvik::draw
