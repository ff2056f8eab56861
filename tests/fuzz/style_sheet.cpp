// A style sheet, and what it comes to for an element that names several of its rules.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "sorvikdraw/dom/cascade.h"
#include "sorvikdraw/dom/style_sheet_parser.h"
#include "sorvikdraw/dom/xml_parser_error.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace sorvik::draw;
    StyleSheetParser parser;
    try {
        const auto sheet = parser.parse({reinterpret_cast<const char*>(data), size});
        const auto empty = std::make_shared<const dom::PresentationAttributes>();
        const dom::GraphicsElement element{dom::Rect(), std::string("i"), std::string("a b"), empty, empty};
        (void)dom::Cascade({&sheet, 1}).presentationAttributes(element);
    } catch (const XMLParserError&) {  // a sheet is bad as a whole
        return 0;
    }
    return 0;
}
