#include "sorvikdraw/dom/xml_parser.h"

#include "sorvikdraw/dom/document_reader.h"

namespace sorvik::draw {

dom::SVG XMLParser::parseSVG(const xml::Element& element) const {
    if (element.name != "svg") {
        throw Error(Error::Kind::invalid, {}, "the root of the document is not <svg>")
            .within(std::string(element.name), element.parsedLocation);
    }
    return DocumentReader(element, options_, filename_).read();
}

}  // namespace sorvik::draw
