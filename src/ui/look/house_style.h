#pragma once

#include <QProxyStyle>

class QPushButton;
class QStyleOptionButton;
class QStyleOptionTab;

namespace sorvik {

/// Qt's Fusion with flat controls and a focus ring that can be seen in light and dark.
class HouseStyle final : public QProxyStyle {
    Q_OBJECT

public:
    HouseStyle();

    /// Marks the one button of a window that does its work.
    static void makePrimary(QPushButton& button);

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                       const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                                       const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returned) const override;

private:
    void drawTabLabel(const QStyleOptionTab& option, QPainter& painter, const QWidget* widget) const;
    void drawCheckBox(const QStyleOptionButton& option, QPainter& painter, const QWidget* widget) const;
};

}  // namespace sorvik
