#pragma once

#include <QString>
#include <QStringView>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace sorvik {

/// One row of a table from text to text.
struct TextRow {
    std::u16string_view key;
    std::u16string_view text;
};

[[nodiscard]] inline std::u16string_view unitsOf(QStringView text) {
    return {text.utf16(), static_cast<std::size_t>(text.size())};
}

[[nodiscard]] inline QString textOf(std::u16string_view units) {
    return QString::fromUtf16(units.data(), static_cast<qsizetype>(units.size()));
}

/// The text under a key, compared exactly.
template <typename Table>
[[nodiscard]] std::optional<QString> lookUp(const Table& table, QStringView key) {
    const auto row = std::ranges::find(table, unitsOf(key), &TextRow::key);
    return row == std::ranges::end(table) ? std::nullopt : std::optional(textOf(row->text));
}

/// Whether no key comes twice: the first would hide the second.
template <typename Table>
constexpr bool hasDistinctKeys(const Table& table) {
    for (std::size_t index = 0; index < table.size(); ++index) {
        for (std::size_t other = index + 1; other < table.size(); ++other) {
            if (table[index].key == table[other].key) {
                return false;
            }
        }
    }
    return true;
}

/// Whether a text is its own lower-case form, as everything is that lower-cased keys are compared with.
constexpr bool isLowerCase(std::u16string_view text) {
    return std::ranges::none_of(text, [](char16_t unit) { return unit >= u'A' && unit <= u'Z'; });
}

}  // namespace sorvik
