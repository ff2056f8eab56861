#pragma once

#include <array>
#include <cstddef>

namespace sorvik {

/// The columns of both tables, from left to right.
enum class Column { check, name, from, to, size, saving, status, file };

struct ColumnRow {
    const char* title;
    int minimum;  ///< widths in points
    int ideal;
    int maximum;  ///< 0: none
    bool whenCompressing;
};

inline constexpr std::array fileColumns{
    ColumnRow{"", 30, 30, 30, false},     ColumnRow{"Name", 150, 250, 400, true}, ColumnRow{"From", 60, 80, 0, false},
    ColumnRow{"To", 60, 100, 0, false},   ColumnRow{"Size", 60, 80, 0, true},     ColumnRow{"Saving", 60, 80, 0, true},
    ColumnRow{"Status", 40, 60, 0, true}, ColumnRow{"File", 32, 40, 0, true},
};
static_assert(fileColumns.size() == static_cast<std::size_t>(Column::file) + 1);

[[nodiscard]] constexpr int columnIndex(Column column) { return static_cast<int>(column); }
[[nodiscard]] constexpr const ColumnRow& columnRow(int index) {
    return fileColumns.at(static_cast<std::size_t>(index));
}

}  // namespace sorvik
