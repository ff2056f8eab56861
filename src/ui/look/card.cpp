#include "ui/look/card.h"

#include <QPainter>

#include "ui/look/theme.h"

namespace sorvik {

void Card::paintEvent(QPaintEvent* /*event*/) {
    constexpr qreal cornerRadius = 8;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(lineColour(palette()), 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

}  // namespace sorvik
