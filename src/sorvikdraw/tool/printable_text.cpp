#include "sorvikdraw/tool/printable_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace sorvik::draw::command_line {
namespace {

constexpr std::size_t longest = 1000;  // bytes

constexpr std::uint8_t byteAt(std::string_view text, std::size_t index) {
    return static_cast<std::uint8_t>(text[index]);
}

constexpr bool isContinuation(std::uint8_t byte) { return (byte & 0xC0U) == 0x80U; }

/// The first and last lead bytes of a sequence, and what its second byte may be.
struct Lead {
    std::uint8_t first, last, secondFirst, secondLast;
    std::size_t length;
};

constexpr std::array leads{
    // Printable ASCII is short-cut; C2 80 to C2 9F are control characters.
    Lead{0xC2, 0xC2, 0xA0, 0xBF, 2}, Lead{0xC3, 0xDF, 0x80, 0xBF, 2}, Lead{0xE0, 0xE0, 0xA0, 0xBF, 3},
    Lead{0xE1, 0xEC, 0x80, 0xBF, 3}, Lead{0xED, 0xED, 0x80, 0x9F, 3}, Lead{0xEE, 0xEF, 0x80, 0xBF, 3},
    Lead{0xF0, 0xF0, 0x90, 0xBF, 4}, Lead{0xF1, 0xF3, 0x80, 0xBF, 4}, Lead{0xF4, 0xF4, 0x80, 0x8F, 4},
};

/// The length of the printable character that the text begins with; 0 when it begins with anything else.
std::size_t characterLength(std::string_view text) {
    const std::uint8_t byte = byteAt(text, 0);
    if (byte < 0x80) {
        return byte >= 0x20 && byte != 0x7F ? 1 : 0;
    }
    const auto* lead =
        std::ranges::find_if(leads, [&](const Lead& row) { return byte >= row.first && byte <= row.last; });
    if (lead == leads.end() || text.size() < lead->length || byteAt(text, 1) < lead->secondFirst ||
        byteAt(text, 1) > lead->secondLast) {
        return 0;
    }
    const std::string_view rest = text.substr(2, lead->length - 2);
    return std::ranges::all_of(rest, [](char c) { return isContinuation(static_cast<std::uint8_t>(c)); }) ? lead->length
                                                                                                          : 0;
}

std::string escaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) {
            const std::uint8_t byte = byteAt(text, 0);
            result.append("\\x").append({digits[byte >> 4U], digits[byte & 15U]});
        } else {
            result.append(text.substr(0, length));
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

/// The position of the character that `position` lies in.
std::size_t characterStart(std::string_view text, std::size_t position) {
    while (position > 0 && isContinuation(byteAt(text, position))) {
        --position;
    }
    return position;
}

}  // namespace

std::string printable(std::string_view text) {
    const std::string line = escaped(text);
    if (line.size() <= longest) {
        return line;
    }
    constexpr std::string_view gap = " ... ";
    constexpr std::size_t half = (longest - gap.size()) / 2;
    const std::size_t tailStart = characterStart(line, line.size() - half + 4);  // a character has four bytes at most
    return line.substr(0, characterStart(line, half)).append(gap).append(line, tailStart);
}

}  // namespace sorvik::draw::command_line
