#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/dom/xml_element.h"
#include "sorvikdraw/dom/xml_parser_error.h"
#include "sorvikdraw/dom/xml_parser_options.h"

namespace sorvik::draw {

/// Turns a tree of XML into a document.
class XMLParser {
public:
    using Options = XMLParserOptions;
    using Error = XMLParserError;

    /// `filename` stands in messages only; it is empty for what is no file.
    explicit XMLParser(Options options = noOptions, std::string filename = {})
        : options_(options), filename_(std::move(filename)) {}

    /// Throws Error for anything that can't be read: nothing of a document is skipped for being wrong but style
    /// sheets, which are reported on standard error. The document refers to nothing in the tree.
    [[nodiscard]] dom::SVG parseSVG(const xml::Element& element) const;

private:
    Options options_;
    std::string filename_;
};

}  // namespace sorvik::draw
