#include "ui/table/cell_delegates.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

#include "ui/look/progress_arc.h"
#include "ui/look/symbols.h"
#include "ui/look/theme.h"
#include "ui/table/cell_geometry.h"
#include "ui/table/row_texts.h"

namespace sorvik {
namespace {

constexpr int statusIconSide = 14;
constexpr int statusArcSide = 8;  // a box of 16, scaled by a half
constexpr int metadataArcSide = 8;
constexpr int chevronSide = 12;
constexpr int statusSpacing = 6;
constexpr qreal pickerRadius = 5;

const QStyle& styleOf(const QStyleOptionViewItem& option) {
    return option.widget != nullptr ? *option.widget->style() : *QApplication::style();
}

void drawPickerFrame(QPainter& painter, const QRect& box, const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(lineColour(palette));
    painter.setBrush(palette.button());
    painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), pickerRadius, pickerRadius);
    painter.restore();
}

}  // namespace

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    styleOf(cell).drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
    painter->save();
    paintContent(*painter, cell, index);
    painter->restore();
    if (cell.state.testFlag(QStyle::State_HasFocus)) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(cell);
        styleOf(cell).drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, cell.widget);
    }
}

const FileTableModel& CellDelegate::modelOf(const QModelIndex& index) {
    return dynamic_cast<const FileTableModel&>(*index.model());
}

const FileItem& CellDelegate::fileOf(const QModelIndex& index) { return modelOf(index).file(index); }

QColor CellDelegate::inkOf(const QStyleOptionViewItem& option, QPalette::ColorRole role) {
    return option.palette.color(option.state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText : role);
}

void CellDelegate::paintText(QPainter& painter, const QRect& box, const QColor& ink, const QFont& font,
                             const QString& text, Qt::TextElideMode elide, Qt::Alignment alignment) {
    painter.setPen(ink);
    painter.setFont(font);
    const QString line = QFontMetrics(font).elidedText(text, elide, box.width());
    painter.drawText(box, static_cast<int>(alignment) | Qt::TextSingleLine, line);
}

void CheckDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    QStyleOptionButton box;
    box.initFrom(option.widget);
    box.palette = option.palette;
    const int side = styleOf(option).pixelMetric(QStyle::PM_IndicatorWidth, nullptr, option.widget);
    box.rect = centredBox(option.rect, side);
    box.state = QStyle::State_Enabled | (fileOf(index).isSelected ? QStyle::State_On : QStyle::State_Off);
    styleOf(option).drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, option.widget);
}

void NameDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const FileItem& file = fileOf(index);
    const bool hasIcon = icons_ != nullptr && MetadataIcons::hasIcon(file);
    QRect box = nameTextBox(option.rect, hasIcon);
    if (file.errorMessage) {
        const QFont caption = styledFont(option.font, TextStyle::caption);
        const int lineHeight = QFontMetrics(option.font).height();
        const int below = messageHeight(caption, *file.errorMessage, box.width());
        box = QRect(box.left(), box.top() + (box.height() - lineHeight - below) / 2, box.width(), lineHeight);
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        painter.setPen(selected ? inkOf(option, QPalette::Text) : failureColour(option.palette));
        painter.setFont(caption);
        painter.drawText(QRect(box.left(), box.bottom() + 1, box.width(), below), Qt::TextWordWrap, *file.errorMessage);
    }
    paintText(painter, box, inkOf(option, QPalette::Text), option.font, file.name(), Qt::ElideMiddle);
    if (hasIcon) {
        paintIcon(painter, option, file);
    }
}

void NameDelegate::paintIcon(QPainter& painter, const QStyleOptionViewItem& option, const FileItem& file) const {
    const QRect box = metadataIconBox(option.rect);
    const auto answer = icons_->answer(file.id);
    if (!answer) {
        drawProgressArc(painter, centredBox(box, metadataArcSide), inkOf(option, QPalette::PlaceholderText));
    } else if (answer->hasMetadata) {
        drawSymbol(painter, Symbol::info, box, inkOf(option, QPalette::Text));
    } else {
        drawSymbol(painter, Symbol::none, box, inkOf(option, QPalette::PlaceholderText));
    }
}

void TextDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                                const QModelIndex& /*index*/) const {
    const bool isAbsent = option.text == noValue();
    const QColor ink = inkOf(option, isAbsent ? QPalette::PlaceholderText : role_);
    paintText(painter, option.rect.adjusted(cellPadding, 0, -cellPadding, 0), ink, option.font, option.text);
}

void FormatDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    const QRect box = pickerBox(option.rect).adjusted(cellPadding - 2, 0, -cellPadding + 2, 0);
    if (!fileOf(index).inputFormat) {
        paintText(painter, box, inkOf(option, QPalette::PlaceholderText), option.font, noValue());
        return;
    }
    drawPickerFrame(painter, pickerBox(option.rect), option.palette);
    const QColor ink = option.palette.color(QPalette::ButtonText);
    const QRect chevron(box.right() - chevronSide + 1, centredBox(box, chevronSide).top(), chevronSide, chevronSide);
    paintText(painter, box.adjusted(0, 0, -chevronSide, 0), ink, option.font, option.text);
    drawSymbol(painter, Symbol::chevronDown, chevron, ink);
}

void StatusDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    const StatusLook look = statusLook(fileOf(index), modelOf(index).isConverting());
    QRect text = option.rect.adjusted(cellPadding, 0, -cellPadding / 2, 0);
    QColor ink = inkOf(option, QPalette::PlaceholderText);
    switch (look.kind) {
        case StatusLook::Kind::invalid:
            ink = option.state.testFlag(QStyle::State_Selected) ? ink : failureColour(option.palette);
            break;
        case StatusLook::Kind::waiting:
            break;
        case StatusLook::Kind::done:
            drawSymbol(painter, Symbol::done, leadingBox(option.rect, statusIconSide), inkOf(option, QPalette::Text));
            text.setLeft(text.left() + statusIconSide + statusSpacing);
            break;
        case StatusLook::Kind::busy:
            drawProgressArc(painter, centredBox(leadingBox(option.rect, iconSide), statusArcSide),
                            inkOf(option, QPalette::Text));
            text.setLeft(text.left() + iconSide + statusSpacing);
            break;
    }
    paintText(painter, text, ink, option.font, look.label);
}

void RevealDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    if (fileOf(index).inputFormat) {
        drawSymbol(painter, Symbol::reveal, centredBox(option.rect, iconSide), inkOf(option, QPalette::Text));
    }
}

}  // namespace sorvik
