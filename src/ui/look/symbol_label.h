#pragma once

#include <QWidget>

#include "ui/look/symbols.h"

namespace sorvik {

/// A symbol by itself, in secondary colour, that nobody clicks.
class SymbolLabel final : public QWidget {
    Q_OBJECT

public:
    /// `size` is the side of its square, in points.
    SymbolLabel(Symbol symbol, int size, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Symbol symbol_;
};

}  // namespace sorvik
