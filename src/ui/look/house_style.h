#pragma once

#include <QProxyStyle>

class QPushButton;

namespace sorvik {

/// Qt's Fusion with flat buttons and a focus ring that can be seen in light and dark.
class HouseStyle final : public QProxyStyle {
    Q_OBJECT

public:
    HouseStyle();

    /// Marks the one button of a window that does its work.
    static void makePrimary(QPushButton& button);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

}  // namespace sorvik
