#include "ui/look/symbol_label.h"

#include <QPainter>

namespace sorvik {

SymbolLabel::SymbolLabel(Symbol symbol, int size, QWidget* parent) : QWidget(parent), symbol_(symbol) {
    setFixedSize(size, size);
}

void SymbolLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawSymbol(painter, symbol_, rect(), palette().color(QPalette::PlaceholderText));
}

}  // namespace sorvik
