#include "sorvikdraw/dom/printable_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace sorvik::draw {
namespace {

struct Character {
    char32_t code = 0;
    std::size_t bytes = 0;  ///< zero for what is no UTF-8
};

struct Lead {
    unsigned char mask, value;
    std::size_t bytes;
    char32_t smallest;  ///< anything less has a shorter form
};
constexpr std::array leads{Lead{0x80, 0x00, 1, 0}, Lead{0xE0, 0xC0, 2, 0x80}, Lead{0xF0, 0xE0, 3, 0x800},
                           Lead{0xF8, 0xF0, 4, 0x10000}};

bool isScalar(char32_t code) { return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF); }

Character firstCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const auto lead = std::ranges::find_if(leads, [&](const Lead& row) { return (first & row.mask) == row.value; });
    if (lead == leads.end() || text.size() < lead->bytes) {
        return {};
    }
    char32_t code = first & static_cast<unsigned char>(~lead->mask);
    for (const char next : text.substr(1, lead->bytes - 1)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xC0U) != 0x80U) {
            return {};
        }
        code = code << 6U | (byte & 0x3FU);
    }
    return code >= lead->smallest && isScalar(code) ? Character{code, lead->bytes} : Character{};
}

struct Range {
    char32_t from, to;
};
constexpr std::array unprintable{Range{0, 0x1F},        Range{0x7F, 0x9F},     Range{0x200E, 0x200F},
                                 Range{0x2028, 0x202E}, Range{0x2066, 0x2069}, Range{0xFEFF, 0xFEFF}};

bool isPrintable(char32_t code) {
    return std::ranges::none_of(unprintable,
                                [&](const Range& range) { return range.from <= code && code <= range.to; });
}

std::string escaped(char32_t code) {
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), std::uint32_t{code}, 16).ptr;
    return "\\u{" + std::string(digits.data(), end) + "}";
}

}  // namespace

std::string printable(std::string_view text, std::size_t characters) {
    std::string line;
    for (; !text.empty(); --characters) {
        if (characters == 0) {
            return line + "…";
        }
        const Character next = firstCharacter(text);
        if (next.bytes == 0) {
            line += "\uFFFD";
        } else if (isPrintable(next.code)) {
            line += text.substr(0, next.bytes);
        } else {
            line += escaped(next.code);
        }
        text.remove_prefix(std::max<std::size_t>(next.bytes, 1));
    }
    return line;
}

}  // namespace sorvik::draw
