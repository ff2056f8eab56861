#pragma once

#include <QFont>
#include <QPoint>
#include <QRect>

#include "core/file_item.h"
#include "ui/table/file_columns.h"

// Where things stand in a cell, for painting and for clicks alike. In points, in the coordinates of the cell's
// rectangle.

namespace sorvik {

inline constexpr int cellPadding = 8;
inline constexpr int iconSide = 16;

/// What a click on a part of a cell is meant for.
enum class Hotspot { nothing, checkBox, metadata, picker, reveal };

/// A square in the middle of a cell.
[[nodiscard]] QRect centredBox(const QRect& cell, int side);

/// A square at a cell's leading edge.
[[nodiscard]] QRect leadingBox(const QRect& cell, int side);

[[nodiscard]] QRect metadataIconBox(const QRect& nameCell);
[[nodiscard]] QRect pickerBox(const QRect& cell);

/// Where a row's texts stand beside its icon.
[[nodiscard]] QRect nameTextBox(const QRect& nameCell, bool hasIcon);

/// How high a name and the message below it are together.
[[nodiscard]] int nameHeight(const QFont& font, const QString& message, int width);

/// How high a message is at a width, at most three lines.
[[nodiscard]] int messageHeight(const QFont& captionFont, const QString& message, int width);

/// What a cell of a row offers, wherever in the cell.
[[nodiscard]] Hotspot hotspotOf(const FileItem& item, Column column, bool hasIcon);

/// What stands at a point of a cell.
[[nodiscard]] Hotspot hotspotAt(const FileItem& item, Column column, bool hasIcon, const QRect& cell,
                                const QPoint& point);

}  // namespace sorvik
