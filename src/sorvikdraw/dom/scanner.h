#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "sorvikdraw/dom/character_set.h"
#include "sorvikdraw/dom/white_space.h"

namespace sorvik::draw {

/// Reads a text from front to end. Every scan first skips white space; one that fails leaves the position where it was.
class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    [[nodiscard]] std::size_t currentIndex() const { return index_; }
    void goBack(std::size_t index) { index_ = index; }
    /// Nothing but white space is left.
    [[nodiscard]] bool isEOF() const { return skipped() == text_.size(); }
    /// The next character behind white space, not taken.
    [[nodiscard]] std::optional<char> peek() const;

    bool scanString(std::string_view literal);
    std::optional<char> scanCharacter(const CharacterSet& set);
    /// The longest run of characters in `set`, or of characters not in it; at least one.
    std::optional<std::string_view> scanCharacters(const CharacterSet& set);
    std::optional<std::string_view> scanUpTo(const CharacterSet& set);

    /// A decimal number: sign, digits, fraction, exponent. One beyond the type's range is no number.
    std::optional<double> scanDouble();
    std::optional<float> scanFloat();
    /// A number with a unit, in user units.
    std::optional<float> scanCoordinate();
    std::optional<std::int32_t> scanLength();
    /// "0%" to "100%" as a ratio; without "%" only a zero.
    std::optional<float> scanPercentage();
    /// A number from 0 to 1.
    std::optional<float> scanPercentageFloat();
    /// A percentage, or any number.
    std::optional<float> scanAlpha();
    std::optional<std::uint8_t> scanUInt8();
    std::optional<bool> scanBool();

private:
    [[nodiscard]] std::size_t skipped() const;
    std::optional<std::string_view> scanWhile(bool isMember, const CharacterSet& set);
    template <typename Integer>
    std::optional<Integer> scanDigits();

    std::string_view text_;
    std::size_t index_ = 0;
};

inline std::size_t Scanner::skipped() const {
    auto index = index_;
    while (index < text_.size() && isWhiteSpace(text_[index])) {
        ++index;
    }
    return index;
}

inline std::optional<char> Scanner::peek() const {
    const auto start = skipped();
    return start < text_.size() ? std::optional(text_[start]) : std::nullopt;
}

inline bool Scanner::scanString(std::string_view literal) {
    const auto start = skipped();
    if (!text_.substr(start).starts_with(literal)) {
        return false;
    }
    index_ = start + literal.size();
    return true;
}

inline std::optional<char> Scanner::scanCharacter(const CharacterSet& set) {
    const auto start = skipped();
    if (start == text_.size() || !set.contains(text_[start])) {
        return std::nullopt;
    }
    index_ = start + 1;
    return text_[start];
}

}  // namespace sorvik::draw
