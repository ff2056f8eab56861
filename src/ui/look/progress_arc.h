#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

namespace sorvik {

/// How often a turning arc is painted anew, milliseconds.
inline constexpr int progressArcInterval = 80;

/// A turning arc, at the angle for this moment: whoever shows one paints it again every progressArcInterval.
void drawProgressArc(QPainter& painter, const QRectF& box, const QColor& colour);

}  // namespace sorvik
