#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw::xml {

/// Reads XML of any encoding that says what it is (UTF-8, UTF-16, ISO-8859-1, US-ASCII). Nothing outside the document
/// is ever opened. The tree always has a root.
///
/// Throws XMLParserError: invalidDocument, with the place, for what is not well formed, holds no element of SVG or
/// goes beyond limits.h; other for a file that can't be read.
class SAXParser {
public:
    /// A regular file, read in pieces.
    [[nodiscard]] static std::unique_ptr<Tree> parseContentsOf(const std::filesystem::path& file);
    [[nodiscard]] static std::unique_ptr<Tree> parse(std::string_view data);
};

}  // namespace sorvik::draw::xml
