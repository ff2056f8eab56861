#include "ui/table/cell_geometry.h"

#include <QFontMetrics>

#include <algorithm>

#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr int pickerHeight = 24;
constexpr int pickerMargin = 2;
constexpr int clickMargin = 4;  // a small icon is hit from a little way off too

}  // namespace

QRect centredBox(const QRect& cell, int side) {
    return {cell.left() + (cell.width() - side) / 2, cell.top() + (cell.height() - side) / 2, side, side};
}

QRect leadingBox(const QRect& cell, int side) {
    return {cell.left() + cellPadding, cell.top() + (cell.height() - side) / 2, side, side};
}

QRect metadataIconBox(const QRect& nameCell) {
    QRect box = centredBox(nameCell, iconSide);
    box.moveRight(nameCell.right() - cellPadding);
    return box;
}

QRect pickerBox(const QRect& cell) {
    return {cell.left() + pickerMargin, cell.top() + (cell.height() - pickerHeight) / 2,
            cell.width() - 2 * pickerMargin, pickerHeight};
}

QRect nameTextBox(const QRect& nameCell, bool hasIcon) {
    QRect box = nameCell.adjusted(cellPadding, 0, -cellPadding, 0);
    if (hasIcon) {
        box.setRight(metadataIconBox(nameCell).left() - cellPadding / 2);
    }
    return box;
}

int messageHeight(const QFont& captionFont, const QString& message, int width) {
    constexpr int mostLines = 3;
    const QFontMetrics metrics(captionFont);
    const QRect bounds = metrics.boundingRect(0, 0, width, 0, Qt::TextWordWrap, message);
    return std::min(bounds.height(), mostLines * metrics.lineSpacing());
}

int nameHeight(const QFont& font, const QString& message, int width) {
    return QFontMetrics(font).height() + messageHeight(styledFont(font, TextStyle::caption), message, width);
}

Hotspot hotspotOf(const FileItem& item, Column column, bool hasIcon) {
    switch (column) {
        case Column::check:
            return Hotspot::checkBox;
        case Column::name:
            return hasIcon ? Hotspot::metadata : Hotspot::nothing;
        case Column::to:
            return item.inputFormat ? Hotspot::picker : Hotspot::nothing;
        case Column::file:
            return item.inputFormat ? Hotspot::reveal : Hotspot::nothing;
        default:
            return Hotspot::nothing;
    }
}

Hotspot hotspotAt(const FileItem& item, Column column, bool hasIcon, const QRect& cell, const QPoint& point) {
    const Hotspot hotspot = hotspotOf(item, column, hasIcon);
    if (hotspot != Hotspot::metadata) {
        return hotspot;
    }
    const QRect box = metadataIconBox(cell).adjusted(-clickMargin, -clickMargin, clickMargin, clickMargin);
    return box.contains(point) ? hotspot : Hotspot::nothing;
}

}  // namespace sorvik
