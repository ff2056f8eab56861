#pragma once

#include <QWidget>

namespace sorvik {

/// A rounded panel that sets its content off from the window.
class Card final : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace sorvik
