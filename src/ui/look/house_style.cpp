#include "ui/look/house_style.h"

#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>
#include <array>

#include "ui/look/control_drawing.h"
#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr auto primaryProperty = "primary";
constexpr int controlHeight = 28;
constexpr int textInset = 4;  // of fields and pickers, beyond Fusion's
constexpr qreal unselectedTab = 0.72;

struct Metric {
    QStyle::PixelMetric metric;
    int value;
};

constexpr std::array metrics{
    Metric{QStyle::PM_ButtonShiftHorizontal, 0},    Metric{QStyle::PM_ButtonShiftVertical, 0},
    Metric{QStyle::PM_IndicatorWidth, 14},          Metric{QStyle::PM_IndicatorHeight, 14},
    Metric{QStyle::PM_CheckBoxLabelSpacing, 7},     Metric{QStyle::PM_SliderThickness, 24},
    Metric{QStyle::PM_SliderControlThickness, 22},  Metric{QStyle::PM_SliderLength, 22},
    Metric{QStyle::PM_ScrollBarExtent, 12},         Metric{QStyle::PM_TabBarTabShiftVertical, 0},
    Metric{QStyle::PM_TabBarTabShiftHorizontal, 0}, Metric{QStyle::PM_TabBarTabOverlap, 0},
    Metric{QStyle::PM_TabBarBaseOverlap, 0},        Metric{QStyle::PM_TabBarTabHSpace, 28},
    Metric{QStyle::PM_TabBarTabVSpace, 16},         Metric{QStyle::PM_HeaderMargin, 8},
};

bool isPrimary(const QWidget* widget) { return widget != nullptr && widget->property(primaryProperty).toBool(); }

/// The space to the sides of a text, and no control lower than the others.
QSize roomier(const QSize& size, int width) { return {size.width() + width, std::max(size.height(), controlHeight)}; }

}  // namespace

HouseStyle::HouseStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void HouseStyle::makePrimary(QPushButton& button) {
    button.setProperty(primaryProperty, true);
    button.setDefault(true);
}

void HouseStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QScrollBar*>(widget) != nullptr) {
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
        widget->setAttribute(Qt::WA_Hover);
    }
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    switch (element) {
        case PE_PanelButtonCommand:
            drawButtonPanel(*option, *painter, isPrimary(widget));
            if (option->state.testFlag(State_HasFocus)) {
                drawFocusRing(*option, *painter);
            }
            break;
        case PE_PanelButtonTool:
            drawToolButtonPanel(*option, *painter);
            break;
        case PE_IndicatorCheckBox:
            drawCheckIndicator(*option, *painter);
            break;
        case PE_PanelLineEdit:
            if (frame != nullptr && frame->lineWidth > 0) {
                drawFieldPanel(*option, *painter);
            } else {
                QProxyStyle::drawPrimitive(element, option, painter, widget);
            }
            break;
        case PE_FrameTabBarBase:
            painter->fillRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1,
                              lineColour(option->palette));
            break;
        case PE_FrameMenu:
            painter->save();
            painter->setPen(lineColour(option->palette));
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
            painter->restore();
            break;
        case PE_FrameFocusRect:
            drawFocusRing(*option, *painter);
            break;
        case PE_FrameDefaultButton:
        case PE_FrameTabWidget:
            break;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    const auto* progress = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (element == CE_TabBarTabShape && tab != nullptr) {
        drawTabShape(*tab, *painter);
    } else if (element == CE_TabBarTabLabel && tab != nullptr) {
        drawTabLabel(*tab, *painter, widget);
    } else if (element == CE_CheckBox && button != nullptr) {
        drawCheckBox(*button, *painter, widget);
    } else if (element == CE_HeaderSection && header != nullptr) {
        drawHeaderSection(*header, *painter);
    } else if (element == CE_ProgressBar && progress != nullptr && !progress->textVisible) {
        drawProgressGroove(*progress, *painter);
    } else if (element == CE_MenuItem && item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator) {
        painter->fillRect(option->rect.left(), option->rect.center().y(), option->rect.width(), 1,
                          lineColour(option->palette));
    } else if (element == CE_PushButtonLabel && button != nullptr && isPrimary(widget) &&
               button->state.testFlag(State_Enabled)) {
        QStyleOptionButton onAccent = *button;
        onAccent.palette.setColor(QPalette::ButtonText, button->palette.color(QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &onAccent, painter, widget);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

// Fusion draws the focus of tabs and check boxes without asking this style, so it is not told of it.

void HouseStyle::drawTabLabel(const QStyleOptionTab& option, QPainter& painter, const QWidget* widget) const {
    QStyleOptionTab label = option;
    label.state.setFlag(State_HasFocus, false);
    painter.save();
    if (!option.state.testFlag(State_Selected)) {
        painter.setOpacity(painter.opacity() * unselectedTab);
    }
    QProxyStyle::drawControl(CE_TabBarTabLabel, &label, &painter, widget);
    painter.restore();
    if (option.state.testFlag(State_HasFocus)) {
        label.rect = option.rect.adjusted(3, 2, -3, -6);
        drawFocusRing(label, painter);
    }
}

void HouseStyle::drawCheckBox(const QStyleOptionButton& option, QPainter& painter, const QWidget* widget) const {
    QStyleOptionButton box = option;
    box.state.setFlag(State_HasFocus, false);
    QProxyStyle::drawControl(CE_CheckBox, &box, &painter, widget);
    if (option.state.testFlag(State_HasFocus)) {
        box.rect = subElementRect(SE_CheckBoxFocusRect, &option, widget);
        drawFocusRing(box, painter);
    }
}

void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const {
    const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ComboBox && box != nullptr && !box->editable) {
        drawComboBox(*box, subControlRect(control, box, SC_ComboBoxArrow, widget), *painter);
    } else if (control == CC_Slider && slider != nullptr && slider->orientation == Qt::Horizontal &&
               slider->tickPosition == 0) {
        drawSlider(*slider, subControlRect(control, slider, SC_SliderHandle, widget), *painter);
    } else if (control == CC_ScrollBar && slider != nullptr) {
        drawScrollBar(*slider, scrollBarThumb(*slider), *painter);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

QRect HouseStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    switch (element) {
        case SE_CheckBoxFocusRect:  // the ring is not to touch the text
            return rect.adjusted(-2, -2, 2, 2).intersected(option->rect);
        case SE_LineEditContents:
            return rect.adjusted(textInset, 0, -textInset, 0);
        default:
            return rect;
    }
}

QRect HouseStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                                 const QWidget* widget) const {
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && slider != nullptr) {
        const QRect thumb = scrollBarThumb(*slider);
        const bool horizontal = slider->orientation == Qt::Horizontal;
        QRect rest = option->rect;
        switch (subControl) {
            case SC_ScrollBarSlider:
                return thumb;
            case SC_ScrollBarGroove:
                return rest;
            case SC_ScrollBarSubPage:
                horizontal ? rest.setRight(thumb.left() - 1) : rest.setBottom(thumb.top() - 1);
                return rest;
            case SC_ScrollBarAddPage:
                horizontal ? rest.setLeft(thumb.right() + 1) : rest.setTop(thumb.bottom() + 1);
                return rest;
            default:
                return {};
        }
    }
    const QRect rect = QProxyStyle::subControlRect(control, option, subControl, widget);
    if (control == CC_ComboBox && subControl == SC_ComboBoxEditField) {
        return rect.adjusted(textInset, 0, 0, 0);
    }
    return rect;
}

QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    const QSize natural = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
        case CT_PushButton:
            return roomier(natural, 12);
        case CT_ComboBox:
        case CT_LineEdit:
            return roomier(natural, 2 * textInset);
        case CT_ToolButton:
            return natural.expandedTo(QSize(controlHeight, controlHeight));
        case CT_CheckBox:
            return natural + QSize(6, 4);  // for the ring
        default:
            return natural;
    }
}

int HouseStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    const auto* own = std::ranges::find(metrics, metric, &Metric::metric);
    return own == metrics.end() ? QProxyStyle::pixelMetric(metric, option, widget) : own->value;
}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const {
    switch (hint) {
        case SH_Slider_AbsoluteSetButtons:  // a click beside the handle brings it there
            return Qt::LeftButton;
        case SH_EtchDisabledText:
        case SH_DitherDisabledText:
            return 0;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returned);
    }
}

}  // namespace sorvik
