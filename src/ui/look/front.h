#pragma once

class QWidget;

namespace sorvik {

/// Shows the window, also one that is minimised, above all others and with the focus.
void bringToFront(QWidget& window);

}  // namespace sorvik
