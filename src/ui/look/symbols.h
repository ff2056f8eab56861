#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QRectF>

namespace sorvik {

/// The program's own pictograms; each is a file of the same name under ui/look/symbols.
enum class Symbol {
    convert,
    compress,
    drop,
    clear,
    add,
    again,
    preferences,
    done,
    reveal,
    info,
    none,
    general,
    files,
    output,
    plus,
    minus,
    arrowRight,
    stop,
    chevronDown,
    warning,
};

/// Draws a symbol in one colour, sharp at the painter's device scale. Main thread only, as all of these.
void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& box, const QColor& colour);

/// An icon that takes its colour from the program's palette whenever it is painted, so that it follows a change
/// between light and dark; grey where the control is disabled.
[[nodiscard]] QIcon symbolIcon(Symbol symbol, QPalette::ColorRole role = QPalette::ButtonText);

}  // namespace sorvik
