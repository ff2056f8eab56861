#include "ui/table/metadata_popover_view.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr int listHeight = 300;
constexpr int popoverWidth = 340;
constexpr int labelWidth = 80;
constexpr int rowSpacing = 6;
constexpr int margin = 12;

/// Foreign text: never read as markup.
QLabel* captionLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setTextStyle(*label, TextStyle::caption);
    return label;
}

QLabel* keyLabel(const QString& key) {
    QLabel* label = captionLabel(key + u':');
    QFont font = label->font();
    font.setWeight(QFont::Medium);
    label->setFont(font);
    label->setMinimumWidth(labelWidth);
    setSecondary(*label);
    return label;
}

/// With places where a line may end inside a long word: a label breaks lines at blanks only.
QString breakable(const QString& text) {
    constexpr int longestPart = 16;
    constexpr QChar zeroWidthSpace(0x200B);
    QString parted;
    int part = 0;
    for (const QChar character : text) {
        part = character.isSpace() ? 0 : part + 1;
        if (part > longestPart && !character.isLowSurrogate() && !character.isMark()) {
            parted += zeroWidthSpace;
            part = 1;
        }
        parted += character;
    }
    return parted;
}

QLabel* valueLabel(const QString& value) {
    QLabel* label = captionLabel(breakable(value));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QWidget* makeRows(const QMap<QString, QString>& metadata) {
    auto* rows = new QWidget;
    auto* grid = new QGridLayout(rows);
    grid->setContentsMargins(0, 4, 0, 4);
    grid->setVerticalSpacing(rowSpacing);
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (auto entry = metadata.cbegin(); entry != metadata.cend(); ++entry, ++row) {
        grid->addWidget(keyLabel(entry.key()), row, 0);
        grid->addWidget(valueLabel(entry.value()), row, 1);
    }
    grid->setRowStretch(row, 1);
    return rows;
}

QWidget* makeList(const QMap<QString, QString>& metadata) {
    auto* area = new QScrollArea;
    area->setObjectName(QStringLiteral("metadataList"));
    area->setAccessibleName(QStringLiteral("Metadata"));
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFixedHeight(listHeight);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setWidget(makeRows(metadata));
    area->viewport()->setBackgroundRole(QPalette::Base);
    area->widget()->setBackgroundRole(QPalette::Base);
    return area;
}

QWidget* makeEmptyNote() {
    auto* note = new QLabel(QStringLiteral("No metadata found"));
    note->setAlignment(Qt::AlignCenter);
    setSecondary(*note);
    return note;
}

}  // namespace

MetadataPopoverView::MetadataPopoverView(const QMap<QString, QString>& metadata, QWidget* parent)
    : QFrame(parent, Qt::Popup) {
    setObjectName(QStringLiteral("metadataPopover"));
    setAccessibleName(QStringLiteral("Metadata"));
    setAttribute(Qt::WA_DeleteOnClose);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    setFixedWidth(popoverWidth);
    auto* heading = new QLabel(QStringLiteral("Metadata"));
    setTextStyle(*heading, TextStyle::headline);
    heading->setContentsMargins(0, 0, 0, 4);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(0);
    column->addWidget(heading);
    QWidget* content = metadata.isEmpty() ? makeEmptyNote() : makeList(metadata);
    column->addWidget(content, 1);
    content->setFocus();
}

void MetadataPopoverView::popUp(const QRect& anchor) {
    adjustSize();
    const QScreen* at = QGuiApplication::screenAt(anchor.center());
    const QRect room = (at != nullptr ? at : QGuiApplication::primaryScreen())->availableGeometry();
    const int below = anchor.bottom() + 1;
    const int top = below + height() <= room.bottom() ? below : anchor.top() - height();
    const int left = std::min(anchor.left(), room.right() - width());
    move(std::max(left, room.left()), std::max(top, room.top()));
    show();
}

void MetadataPopoverView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(lineColour(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace sorvik
