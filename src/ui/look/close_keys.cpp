#include "ui/look/close_keys.h"

#include <QKeySequence>
#include <QShortcut>
#include <QWidget>

namespace sorvik {

void closeByKeys(QWidget& window) {
    for (const QKeySequence& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)}) {
        QObject::connect(new QShortcut(keys, &window), &QShortcut::activated, &window, &QWidget::close);
    }
}

}  // namespace sorvik
