#pragma once

#include <cstddef>
#include <string_view>

#include "sorvikdraw/dom/style_sheet.h"

namespace sorvik::draw {

/// Reads the style sheets of one document, which it keeps together within the limits.
class StyleSheetParser {
public:
    /// The text of one "style" element. Throws XMLParserError; a sheet is good as a whole or not at all.
    [[nodiscard]] dom::StyleSheet parse(std::string_view text);

private:
    void count(std::size_t bytes, std::size_t selectors);

    std::size_t bytes_ = 0;
    std::size_t selectors_ = 0;
};

}  // namespace sorvik::draw
