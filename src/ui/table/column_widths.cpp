#include "ui/table/column_widths.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace sorvik {
namespace {

constexpr int statusLabelWidth = 118;  // what the longest label of a status takes

struct Room {
    std::vector<int> widths;
    int spare;

    void change(std::size_t at, const ColumnRow& column, int wanted) {
        const int width = allowedWidth(column, wanted);
        spare -= width - widths[at];
        widths[at] = width;
    }
};

std::size_t placeOf(const std::vector<int>& columns, Column column) {
    return static_cast<std::size_t>(std::ranges::find(columns, columnIndex(column)) - columns.begin());
}

}  // namespace

int allowedWidth(const ColumnRow& column, int width) {
    const int most = column.maximum > 0 ? column.maximum : std::numeric_limits<int>::max();
    return std::clamp(width, column.minimum, most);
}

std::vector<int> columnsOf(ProcessingMode mode) {
    std::vector<int> columns;
    for (int index = 0; index < static_cast<int>(fileColumns.size()); ++index) {
        if (mode == ProcessingMode::convert || columnRow(index).whenCompressing) {
            columns.push_back(index);
        }
    }
    return columns;
}

std::vector<int> fittedWidths(ProcessingMode mode, int available) {
    const std::vector<int> columns = columnsOf(mode);
    Room room{std::vector<int>(columns.size()), 0};
    std::ranges::transform(columns, room.widths.begin(), [](int column) { return columnRow(column).ideal; });
    room.spare = available - std::accumulate(room.widths.begin(), room.widths.end(), 0);
    const auto grow = [&](Column column, int by) {
        const std::size_t at = placeOf(columns, column);
        room.change(at, columnRow(columnIndex(column)), room.widths[at] + by);
    };
    const int missingOfStatus = statusLabelWidth - columnRow(columnIndex(Column::status)).ideal;
    grow(Column::status, std::clamp(room.spare, 0, missingOfStatus));
    grow(Column::name, room.spare);
    grow(Column::status, std::max(room.spare, 0));
    for (std::size_t at = 0; at < columns.size() && room.spare < 0; ++at) {
        room.change(at, columnRow(columns[at]), room.widths[at] + room.spare);
    }
    return room.widths;
}

}  // namespace sorvik
