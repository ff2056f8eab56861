#include "ui/look/progress_arc.h"

#include <chrono>

namespace sorvik {
namespace {

constexpr int turnMilliseconds = 960;
constexpr int sixteenthsOfTurn = 360 * 16;
constexpr int arcLength = sixteenthsOfTurn * 3 / 4;

int angleNow() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    return -static_cast<int>(milliseconds % turnMilliseconds) * sixteenthsOfTurn / turnMilliseconds;
}

}  // namespace

void drawProgressArc(QPainter& painter, const QRectF& box, const QColor& colour) {
    constexpr qreal width = 1.75;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(box.adjusted(width / 2, width / 2, -width / 2, -width / 2), angleNow(), arcLength);
    painter.restore();
}

}  // namespace sorvik
