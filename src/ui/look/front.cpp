#include "ui/look/front.h"

#include <QWidget>

namespace sorvik {

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace sorvik
