// Bytes to a tree of XML. Whatever they are, it is a tree or an error with a line that can be printed.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "sorvikdraw/dom/sax_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto tree =
            sorvik::draw::xml::SAXParser::parse(std::string_view(reinterpret_cast<const char*>(data), size));
        if (tree->root == nullptr || tree->elements.empty()) {
            std::abort();
        }
    } catch (const sorvik::draw::XMLParserError& error) {
        if (std::string_view(error.what()).find('\n') != std::string_view::npos) {
            std::abort();
        }
    }
    return 0;
}
