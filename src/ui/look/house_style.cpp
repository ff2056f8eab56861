#include "ui/look/house_style.h"

#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr qreal cornerRadius = 6;
constexpr qreal focusWidth = 2;
constexpr int headerMargin = 8;
constexpr int buttonMargin = 10;  // round a label, both sides together
constexpr int scrollBarWidth = 13;
constexpr int tabPadding = 14;  // above and below a tab's label together
constexpr auto primaryProperty = "primary";

bool isPrimary(const QWidget* widget) { return widget != nullptr && widget->property(primaryProperty).toBool(); }

struct ButtonColours {
    QColor fill;
    QColor line;
};

ButtonColours buttonColours(const QStyleOption& option, bool primary) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool pressed = option.state.testFlag(QStyle::State_Sunken) || option.state.testFlag(QStyle::State_On);
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
    if (primary && enabled) {
        const QColor accent = option.palette.color(QPalette::Highlight);
        const QColor fill = pressed ? accent.darker(125) : hovered ? accent.darker(110) : accent;
        return {fill, fill};
    }
    const QColor line = lineColour(option.palette);
    if (!enabled) {
        return {option.palette.color(QPalette::Window), line};
    }
    const QColor fill = option.palette.color(pressed ? QPalette::Mid : hovered ? QPalette::Midlight : QPalette::Button);
    return {fill, line};
}

void drawButtonPanel(const QStyleOption& option, QPainter& painter, bool primary) {
    const ButtonColours colours = buttonColours(option, primary);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours.line, 1));
    painter.setBrush(colours.fill);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    painter.restore();
}

/// A ring that stands off the accent too: the accent outside, the window's colour inside.
void drawFocusRing(const QStyleOption& option, QPainter& painter) {
    const qreal inset = focusWidth / 2;
    const QRectF ring = QRectF(option.rect).adjusted(inset, inset, -inset, -inset);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(option.palette.color(QPalette::Highlight), focusWidth));
    painter.drawRoundedRect(ring, cornerRadius, cornerRadius);
    painter.setPen(QPen(option.palette.color(QPalette::Base), 1));
    painter.drawRoundedRect(ring.adjusted(1.5, 1.5, -1.5, -1.5), cornerRadius - 1.5, cornerRadius - 1.5);
    painter.restore();
}

/// A quiet line of titles: no relief, a line below, a short one where a column can be dragged.
void drawHeaderSection(const QStyleOptionHeader& option, QPainter& painter) {
    constexpr int gripInset = 6;
    const QColor line = lineColour(option.palette);
    painter.fillRect(option.rect, option.palette.color(QPalette::Window));
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), line);
    if (option.position != QStyleOptionHeader::End && option.position != QStyleOptionHeader::OnlyOneSection) {
        painter.fillRect(option.rect.right(), option.rect.top() + gripInset, 1, option.rect.height() - 2 * gripInset,
                         line);
    }
}

/// Also in a row that is highlighted, where the accent alone could not be told from the row.
void drawCheckBox(const QStyleOption& option, QPainter& painter) {
    constexpr qreal radius = 3.5;
    const bool on = option.state.testFlag(QStyle::State_On);
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const QColor accent = option.palette.color(enabled ? QPalette::Highlight : QPalette::Mid);
    const QRectF box = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(on ? QPen(option.palette.color(QPalette::Base), 1)
                      : QPen(option.palette.color(QPalette::PlaceholderText), 1));
    painter.setBrush(on ? accent : option.palette.color(QPalette::Base));
    painter.drawRoundedRect(box, radius, radius);
    if (on) {
        const QRectF tick =
            box.adjusted(box.width() * 0.24, box.height() * 0.28, -box.width() * 0.22, -box.height() * 0.26);
        painter.setPen(
            QPen(option.palette.color(QPalette::HighlightedText), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF{{tick.left(), tick.top() + tick.height() * 0.55},
                                       {tick.left() + tick.width() * 0.36, tick.bottom()},
                                       {tick.right(), tick.top()}});
    }
    painter.restore();
}

/// The open tab is told by a bar in the accent's colour.
void drawTab(const QStyleOptionTab& option, QPainter& painter) {
    constexpr int barHeight = 3;
    constexpr int barInset = 10;
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    if (!selected && option.state.testFlag(QStyle::State_MouseOver)) {
        painter.fillRect(option.rect, option.palette.color(QPalette::Midlight));
    }
    if (selected) {
        const QRectF bar(option.rect.left() + barInset, option.rect.bottom() + 1 - barHeight,
                         option.rect.width() - 2 * barInset, barHeight);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(option.palette.color(QPalette::Highlight));
        painter.drawRoundedRect(bar, barHeight / 2.0, barHeight / 2.0);
        painter.restore();
    }
}

/// A thumb on a quiet ground; the ends still step when they are pressed.
void drawScrollBar(const QStyleOptionSlider& option, const QRect& thumb, QPainter& painter) {
    constexpr int inset = 3;
    const bool held = option.state.testFlag(QStyle::State_Sunken) || option.state.testFlag(QStyle::State_MouseOver);
    painter.save();
    painter.fillRect(option.rect, option.palette.color(QPalette::Window));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.color(held ? QPalette::PlaceholderText : QPalette::Dark));
    const QRectF box = QRectF(thumb).adjusted(inset, inset, -inset, -inset);
    const qreal radius = std::min(box.width(), box.height()) / 2;
    painter.drawRoundedRect(box, radius, radius);
    painter.restore();
}

void drawProgressGroove(const QStyleOptionProgressBar& option, QPainter& painter) {
    const QRectF groove(option.rect);
    const qreal radius = groove.height() / 2;
    const int span = std::max(option.maximum - option.minimum, 1);
    QRectF done = groove;
    done.setWidth(groove.width() * (option.progress - option.minimum) / span);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.color(QPalette::Mid));
    painter.drawRoundedRect(groove, radius, radius);
    painter.setBrush(option.palette.color(QPalette::Highlight));
    painter.drawRoundedRect(done, radius, radius);
    painter.restore();
}

}  // namespace

HouseStyle::HouseStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void HouseStyle::makePrimary(QPushButton& button) {
    button.setProperty(primaryProperty, true);
    button.setDefault(true);
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    switch (element) {
        case PE_PanelButtonCommand:
            drawButtonPanel(*option, *painter, isPrimary(widget));
            break;
        case PE_FrameFocusRect:
            drawFocusRing(*option, *painter);
            break;
        case PE_FrameDefaultButton:
            break;
        case PE_IndicatorCheckBox:
            drawCheckBox(*option, *painter);
            break;
        case PE_FrameTabBarBase:
            painter->fillRect(QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1),
                              lineColour(option->palette));
            break;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
        element == CE_HeaderSection && header != nullptr) {
        drawHeaderSection(*header, *painter);
        return;
    }
    if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
        element == CE_TabBarTabShape && tab != nullptr) {
        drawTab(*tab, *painter);
        return;
    }
    if (const auto* progress = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
        element == CE_ProgressBar && progress != nullptr && !progress->textVisible) {
        drawProgressGroove(*progress, *painter);
        return;
    }
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_PushButtonLabel && button != nullptr && isPrimary(widget) &&
        button->state.testFlag(State_Enabled)) {
        QStyleOptionButton onAccent = *button;
        onAccent.palette.setColor(QPalette::ButtonText, button->palette.color(QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &onAccent, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && bar != nullptr) {
        drawScrollBar(*bar, subControlRect(control, option, SC_ScrollBarSlider, widget), *painter);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int HouseStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
        case PM_TabBarTabShiftHorizontal:
        case PM_TabBarTabShiftVertical:
        case PM_TabBarTabOverlap:
        case PM_TabBarBaseOverlap:
            return 0;
        case PM_TabBarTabVSpace:
            return tabPadding;
        case PM_ButtonMargin:
            return buttonMargin;
        case PM_ScrollBarExtent:
            return scrollBarWidth;
        case PM_HeaderMargin:
            return headerMargin;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

}  // namespace sorvik
