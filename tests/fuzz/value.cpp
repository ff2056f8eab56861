// The text of an attribute, read as every kind of value.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "sorvikdraw/dom/attribute_parser.h"
#include "sorvikdraw/dom/value_parser.h"

namespace {

using sorvik::draw::ValueParser;

void requireFinite(float value) {
    if (!std::isfinite(value)) {
        __builtin_trap();
    }
}

void readNumbers(std::string_view text) {
    for (const auto& number :
         {ValueParser::parseFloat(text), ValueParser::parsePercentage(text), ValueParser::parseCoordinate(text)}) {
        requireFinite(number.value_or(0));
    }
    if (const auto numbers = ValueParser::parseFloats(text)) {
        for (const float number : *numbers) {
            requireFinite(number);
        }
    }
    if (const auto points = ValueParser::parsePoints(text)) {
        for (const auto& point : *points) {
            requireFinite(point.x);
            requireFinite(point.y);
        }
    }
}

void readOthers(std::string_view text) {
    (void)ValueParser::parseLength(text);
    (void)ValueParser::parseBool(text);
    (void)ValueParser::parseFill(text);
    (void)ValueParser::parseColor(text);
    (void)ValueParser::parseUrlSelector(text);
    (void)ValueParser::parseTransform(text);
    (void)ValueParser::parsePathSegments(text);
    (void)ValueParser::parseRaw<sorvik::draw::dom::FillRule>(text);
    (void)sorvik::draw::splitStyle(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        readNumbers(text);
        readOthers(text);
    } catch (const sorvik::draw::XMLParserError&) {  // a list beyond the limits, or a name without ":"
        return 0;
    }
    return 0;
}
