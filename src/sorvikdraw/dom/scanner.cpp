#include "sorvikdraw/dom/scanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace sorvik::draw {

namespace {

struct UnitRow {
    std::string_view name;
    double factor;  ///< user units
};
constexpr auto units = std::to_array<UnitRow>({
    {"px", 1},
    {"in", 96.0},
    {"cm", 37.795},
    {"mm", 3.7795},
    {"pt", 1.3333},
    {"pc", 16.0},
});

struct BoolRow {
    std::string_view spelling;
    bool value;
};
constexpr auto boolSpellings = std::to_array<BoolRow>({
    {"true", true},
    {"false", false},
    {"FALSE", false},
    {"TRUE", true},
    {"0", false},
    {"1", true},
});

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

struct Number {
    double value = 0;
    std::size_t size = 0;  ///< characters
};

// std::from_chars takes no "+", and takes "inf" and "nan".
std::optional<Number> leadingNumber(std::string_view text) {
    const std::size_t sign = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
    if (text.size() == sign || (!isDigit(text[sign]) && text[sign] != '.')) {
        return std::nullopt;
    }
    const auto* const begin = text.data() + (text.front() == '+' ? 1 : 0);
    double value = 0;
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
    if (error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    const auto size = static_cast<std::size_t>(end - text.data());
    if (error == std::errc::result_out_of_range) {
        const auto exponent = text.substr(0, size).find_first_of("eE");
        if (exponent == std::string_view::npos || text[exponent + 1] != '-') {
            return std::nullopt;
        }
        value = 0;  // too small to tell from it
    }
    return Number{value, size};
}

std::optional<float> narrowed(double value) {
    if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
        return std::nullopt;
    }
    return static_cast<float>(value);
}

}  // namespace

std::optional<std::string_view> Scanner::scanWhile(bool isMember, const CharacterSet& set) {
    const auto start = skipped();
    auto end = start;
    while (end < text_.size() && set.contains(text_[end]) == isMember) {
        ++end;
    }
    if (end == start) {
        return std::nullopt;
    }
    index_ = end;
    return text_.substr(start, end - start);
}

std::optional<std::string_view> Scanner::scanCharacters(const CharacterSet& set) { return scanWhile(true, set); }

std::optional<std::string_view> Scanner::scanUpTo(const CharacterSet& set) { return scanWhile(false, set); }

std::optional<double> Scanner::scanDouble() {
    const auto start = skipped();
    const auto number = leadingNumber(text_.substr(start));
    if (!number) {
        return std::nullopt;
    }
    index_ = start + number->size;
    return number->value;
}

std::optional<float> Scanner::scanFloat() {
    const auto start = index_;
    const auto number = scanDouble();
    const auto value = number ? narrowed(*number) : std::nullopt;
    if (!value) {
        index_ = start;
    }
    return value;
}

std::optional<float> Scanner::scanCoordinate() {
    const auto start = index_;
    const auto number = scanDouble();
    if (!number) {
        return std::nullopt;
    }
    double factor = 1;
    for (const auto& unit : units) {
        if (scanString(unit.name)) {
            factor = unit.factor;
            break;
        }
    }
    const auto value = narrowed(*number * factor);
    if (!value) {
        index_ = start;
    }
    return value;
}

template <typename Integer>
std::optional<Integer> Scanner::scanDigits() {
    const auto start = skipped();
    Integer value = 0;
    const auto [end, error] = std::from_chars(text_.data() + start, text_.data() + text_.size(), value);
    if (error != std::errc() || value < 0) {
        return std::nullopt;
    }
    index_ = static_cast<std::size_t>(end - text_.data());
    return value;
}

std::optional<std::int32_t> Scanner::scanLength() { return scanDigits<std::int32_t>(); }

std::optional<std::uint8_t> Scanner::scanUInt8() { return scanDigits<std::uint8_t>(); }

std::optional<float> Scanner::scanPercentage() {
    const auto start = index_;
    static constexpr CharacterSet characters("+-0123456789.Ee");
    const auto run = scanCharacters(characters);
    const auto number = run ? leadingNumber(*run) : std::nullopt;
    if (number && number->size == run->size() && number->value >= 0 && number->value <= 100) {
        if (scanString("%")) {
            return static_cast<float>(number->value / 100);
        }
        if (number->value == 0) {
            return 0.0F;
        }
    }
    index_ = start;
    return std::nullopt;
}

std::optional<float> Scanner::scanPercentageFloat() {
    const auto start = index_;
    const auto number = scanFloat();
    if (number && *number >= 0 && *number <= 1) {
        return number;
    }
    index_ = start;
    return std::nullopt;
}

std::optional<float> Scanner::scanAlpha() {
    const auto percentage = scanPercentage();
    return percentage ? percentage : scanFloat();
}

std::optional<bool> Scanner::scanBool() {
    for (const auto& row : boolSpellings) {
        if (scanString(row.spelling)) {
            return row.value;
        }
    }
    return std::nullopt;
}

}  // namespace sorvik::draw
