#pragma once

#include <QString>

#include <vector>

#include "core/file_item.h"

namespace sorvik {

/// How a row is printed. Column widths come from all rows, so that lines that are printed one by one
/// stand under each other.
class RowReport {
public:
    explicit RowReport(const std::vector<FileItem>& rows);

    /// Name, from, to, outcome, size, and the saving when there is one, in columns. Control characters of a
    /// name are shown escaped.
    [[nodiscard]] QString line(const FileItem& row) const;

private:
    qsizetype nameWidth_ = 0;
};

/// One row as a JSON object on one line. `outputPath` is where its result lies, empty without one.
[[nodiscard]] QString jsonLine(const FileItem& row, const QString& outputPath);

}  // namespace sorvik
