#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace sorvik::draw {

/// Some of the 256 bytes; made of a text without further ado.
class CharacterSet {
public:
    constexpr CharacterSet(std::string_view members) {
        for (const char member : members) {
            words_[wordOf(member)] |= bitOf(member);
        }
    }
    constexpr CharacterSet(const char* members) : CharacterSet(std::string_view(members)) {}

    [[nodiscard]] constexpr bool contains(char c) const { return (words_[wordOf(c)] & bitOf(c)) != 0; }

private:
    static constexpr unsigned wordOf(char c) { return static_cast<unsigned char>(c) / 64U; }
    static constexpr std::uint64_t bitOf(char c) { return std::uint64_t{1} << (static_cast<unsigned char>(c) % 64U); }

    std::array<std::uint64_t, 4> words_{};
};

}  // namespace sorvik::draw
