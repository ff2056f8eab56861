#include "ui/drop_zone_view.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/look/symbols.h"
#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr int iconSide = 32;
constexpr int corner = 8;
constexpr int margin = 16;
constexpr qreal fillOpacity = 0.2;
constexpr qreal invitingOpacity = 0.18;
constexpr qreal edgeWidth = 2;

class SymbolView final : public QWidget {
public:
    explicit SymbolView(QWidget* parent) : QWidget(parent) { setFixedSize(iconSide, iconSide); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawSymbol(painter, Symbol::drop, rect(), palette().color(QPalette::PlaceholderText));
    }
};

}  // namespace

DropZoneView::DropZoneView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("dropZone"));
    setAccessibleName(QStringLiteral("Drop your images here"));
    auto* icon = new SymbolView(this);
    icon->setObjectName(QStringLiteral("dropZoneIcon"));
    auto* text = new QLabel(QStringLiteral("Drop your images here"), this);
    text->setObjectName(QStringLiteral("dropZoneText"));
    setTextStyle(*text, TextStyle::title);
    setSecondary(*text);
    auto* column = new QVBoxLayout(this);
    column->setSpacing(12);
    column->addStretch();
    column->addWidget(icon, 0, Qt::AlignHCenter);
    column->addWidget(text, 0, Qt::AlignHCenter);
    column->addStretch();
}

void DropZoneView::setInviting(bool inviting) {
    inviting_ = inviting;
    update();
}

void DropZoneView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Highlight);
    QColor fill = inviting_ ? accent : QColor(Qt::gray);
    fill.setAlphaF(static_cast<float>(inviting_ ? invitingOpacity : fillOpacity));
    painter.setBrush(fill);
    painter.setPen(inviting_ ? QPen(accent, edgeWidth) : QPen(Qt::NoPen));
    painter.drawRoundedRect(QRectF(rect()).adjusted(margin, margin, -margin, -margin), corner, corner);
}

}  // namespace sorvik
