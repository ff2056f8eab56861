// Bytes to a document, with faulty attributes skipped and not: the one reads whatever the other does.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace {

bool reads(std::string_view bytes, sorvik::draw::XMLParserOptions options) {
    try {
        const auto svg = sorvik::draw::dom::SVG::parseData(bytes, options);
        static_cast<void>(svg.firstGraphicsElement("a"));
        return true;
    } catch (const sorvik::draw::XMLParserError&) {
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (reads(bytes, sorvik::draw::noOptions) && !reads(bytes, sorvik::draw::skipInvalidAttributes)) {
        std::abort();
    }
    return 0;
}
