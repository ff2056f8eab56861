#pragma once

#include <vector>

#include "core/app_settings.h"
#include "ui/table/file_columns.h"

namespace sorvik {

/// A width that a column may have.
[[nodiscard]] int allowedWidth(const ColumnRow& column, int width);

/// The columns of a mode, by index.
[[nodiscard]] std::vector<int> columnsOf(ProcessingMode mode);

/// Widths for all columns of a mode in a table of `available` points, in the order of columnsOf(): the ideal ones. What
/// is left over goes to the status until its labels fit, to the name as far as it may grow, and to the status
/// again; what is missing is taken from the name, then from all others in turn, down to their minimum.
[[nodiscard]] std::vector<int> fittedWidths(ProcessingMode mode, int available);

}  // namespace sorvik
