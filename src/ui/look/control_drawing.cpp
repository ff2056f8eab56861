#include "ui/look/control_drawing.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

#include "ui/look/symbols.h"
#include "ui/look/theme.h"

namespace sorvik {
namespace {

constexpr qreal cornerRadius = 6;
constexpr qreal focusWidth = 2;
constexpr int chevronSize = 12;

/// What is drawn through it leaves the painter as it was.
class SmoothPainter {
public:
    explicit SmoothPainter(QPainter& painter) : painter_(painter) {
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
    }
    ~SmoothPainter() { painter_.restore(); }
    SmoothPainter(const SmoothPainter&) = delete;
    SmoothPainter& operator=(const SmoothPainter&) = delete;

    QPainter* operator->() const { return &painter_; }

private:
    QPainter& painter_;
};

bool isEnabled(const QStyleOption& option) { return option.state.testFlag(QStyle::State_Enabled); }
bool hasFocus(const QStyleOption& option) { return option.state.testFlag(QStyle::State_HasFocus); }
bool isHovered(const QStyleOption& option) {
    return isEnabled(option) && option.state.testFlag(QStyle::State_MouseOver);
}
bool isPressed(const QStyleOption& option) {
    return option.state.testFlag(QStyle::State_Sunken) || option.state.testFlag(QStyle::State_On);
}

QColor accent(const QStyleOption& option) {
    return isEnabled(option) ? option.palette.color(QPalette::Highlight) : lineColour(option.palette);
}

void drawRounded(QPainter& painter, const QRectF& rect, const QColor& fill, const QPen& pen, qreal radius) {
    const SmoothPainter smooth(painter);
    const qreal inset = pen.style() == Qt::NoPen ? 0 : pen.widthF() / 2;
    smooth->setPen(pen);
    smooth->setBrush(fill);
    smooth->drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
}

struct ButtonColours {
    QColor fill;
    QColor line;
};

ButtonColours buttonColours(const QStyleOption& option, bool primary) {
    if (primary && isEnabled(option)) {
        const QColor base = accent(option);
        const QColor fill = isPressed(option) ? base.darker(125) : isHovered(option) ? base.darker(110) : base;
        return {fill, fill};
    }
    const QColor line = lineColour(option.palette);
    if (!isEnabled(option)) {
        return {option.palette.color(QPalette::Window), line};
    }
    const QPalette::ColorRole role = isPressed(option)   ? QPalette::Mid
                                     : isHovered(option) ? QPalette::Midlight
                                                         : QPalette::Button;
    return {option.palette.color(role), line};
}

void drawTick(QPainter& painter, const QRectF& box, const QColor& colour) {
    const SmoothPainter smooth(painter);
    const auto at = [&box](qreal x, qreal y) { return box.topLeft() + QPointF(box.width() * x, box.height() * y); };
    smooth->setPen(QPen(colour, box.width() / 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    smooth->drawPolyline(QPolygonF{at(0.25, 0.53), at(0.43, 0.71), at(0.76, 0.33)});
}

void drawDash(QPainter& painter, const QRectF& box, const QColor& colour) {
    const SmoothPainter smooth(painter);
    smooth->setPen(QPen(colour, box.width() / 8, Qt::SolidLine, Qt::RoundCap));
    smooth->drawLine(QPointF(box.left() + box.width() * 0.28, box.center().y()),
                     QPointF(box.right() - box.width() * 0.28, box.center().y()));
}

}  // namespace

void drawButtonPanel(const QStyleOption& option, QPainter& painter, bool primary) {
    const ButtonColours colours = buttonColours(option, primary);
    drawRounded(painter, option.rect, colours.fill, QPen(colours.line, 1), cornerRadius);
}

void drawToolButtonPanel(const QStyleOption& option, QPainter& painter) {
    const bool flat = option.state.testFlag(QStyle::State_AutoRaise);
    if (!flat) {
        drawButtonPanel(option, painter, false);
    } else if (isEnabled(option) && (isPressed(option) || isHovered(option))) {
        const QColor fill = option.palette.color(isPressed(option) ? QPalette::Mid : QPalette::Midlight);
        drawRounded(painter, option.rect, fill, Qt::NoPen, cornerRadius);
    }
}

void drawFocusRing(const QStyleOption& option, QPainter& painter) {
    const QPen outer(option.palette.color(QPalette::Highlight), focusWidth);
    const QPen inner(option.palette.color(QPalette::Base), 1);
    const QRectF inside = QRectF(option.rect).adjusted(focusWidth, focusWidth, -focusWidth, -focusWidth);
    drawRounded(painter, option.rect, Qt::transparent, outer, cornerRadius);
    drawRounded(painter, inside, Qt::transparent, inner, cornerRadius - 1.5);
}

void drawCheckIndicator(const QStyleOption& option, QPainter& painter) {
    constexpr qreal radius = 4;
    const bool marked = !option.state.testFlag(QStyle::State_Off);
    const QColor line = isEnabled(option) ? controlLineColour(option.palette) : lineColour(option.palette);
    const QColor fill = marked              ? accent(option)
                        : isHovered(option) ? option.palette.color(QPalette::Midlight)
                                            : option.palette.color(QPalette::Base);
    // In a row that is highlighted the accent alone could not be told from the row.
    const QColor edge = marked ? option.palette.color(QPalette::Base) : line;
    drawRounded(painter, option.rect, fill, QPen(edge, 1), radius);
    const QColor mark = option.palette.color(QPalette::HighlightedText);
    if (option.state.testFlag(QStyle::State_On)) {
        drawTick(painter, option.rect, mark);
    } else if (marked) {
        drawDash(painter, option.rect, mark);
    }
}

void drawFieldPanel(const QStyleOption& option, QPainter& painter) {
    const bool usable = isEnabled(option);
    const QColor line = usable ? controlLineColour(option.palette) : lineColour(option.palette);
    const QPen pen = hasFocus(option) ? QPen(accent(option), focusWidth) : QPen(line, 1);
    drawRounded(painter, option.rect, option.palette.color(usable ? QPalette::Base : QPalette::Window), pen,
                cornerRadius);
}

void drawTabShape(const QStyleOptionTab& option, QPainter& painter) {
    constexpr int barHeight = 3;
    if (option.state.testFlag(QStyle::State_Selected)) {
        const QRect bar(option.rect.left(), option.rect.bottom() + 1 - barHeight, option.rect.width(), barHeight);
        painter.fillRect(bar, accent(option));
    } else if (isHovered(option)) {
        drawRounded(painter, option.rect.adjusted(2, 2, -2, -4), option.palette.color(QPalette::Midlight), Qt::NoPen,
                    cornerRadius);
    }
}

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

void drawProgressGroove(const QStyleOptionProgressBar& option, QPainter& painter) {
    const QRectF groove(option.rect);
    const int span = std::max(option.maximum - option.minimum, 1);
    QRectF done = groove;
    done.setWidth(groove.width() * (option.progress - option.minimum) / span);
    drawRounded(painter, groove, option.palette.color(QPalette::Mid), Qt::NoPen, groove.height() / 2);
    drawRounded(painter, done, accent(option), Qt::NoPen, groove.height() / 2);
}

void drawComboBox(const QStyleOptionComboBox& option, const QRect& arrow, QPainter& painter) {
    drawButtonPanel(option, painter, false);
    QRectF box(0, 0, chevronSize, chevronSize);
    box.moveCenter(QRectF(arrow).center());
    drawSymbol(painter, Symbol::chevronDown, box.toAlignedRect(),
               option.palette.color(isEnabled(option) ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    if (hasFocus(option)) {
        drawFocusRing(option, painter);
    }
}

void drawSlider(const QStyleOptionSlider& option, const QRect& handle, QPainter& painter) {
    constexpr qreal grooveHeight = 4;
    constexpr qreal ringWidth = 3;
    const QRectF rect(option.rect);
    const QRectF groove(rect.left() + ringWidth, rect.center().y() - grooveHeight / 2, rect.width() - 2 * ringWidth,
                        grooveHeight);
    const QPointF centre(QRectF(handle).center().x(), rect.center().y());
    QRectF filled = groove;
    const bool mirrored = option.direction == Qt::RightToLeft;
    mirrored ? filled.setLeft(centre.x()) : filled.setRight(centre.x());
    drawRounded(painter, groove, lineColour(option.palette), Qt::NoPen, grooveHeight / 2);
    drawRounded(painter, filled, accent(option), Qt::NoPen, grooveHeight / 2);

    const SmoothPainter smooth(painter);
    const qreal radius = handle.width() / 2.0 - ringWidth;
    const QColor knob = option.palette.color(isEnabled(option) ? QPalette::BrightText : QPalette::Window);
    smooth->setBrush(isPressed(option) || isHovered(option) ? knob.darker(106) : knob);
    smooth->setPen(QPen(controlLineColour(option.palette), 1));
    smooth->drawEllipse(centre, radius - 0.5, radius - 0.5);
    if (hasFocus(option)) {
        smooth->setBrush(Qt::NoBrush);
        smooth->setPen(QPen(accent(option), focusWidth));
        smooth->drawEllipse(centre, radius + 1.5, radius + 1.5);
    }
}

QRect scrollBarThumb(const QStyleOptionSlider& option) {
    constexpr int shortest = 28;
    const bool horizontal = option.orientation == Qt::Horizontal;
    const int length = horizontal ? option.rect.width() : option.rect.height();
    const qint64 range = qint64{option.maximum} - option.minimum;
    const qint64 page = std::max(option.pageStep, 1);
    const int natural = static_cast<int>(length * page / (range + page));
    const int thumb = range == 0 ? length : std::min(std::max(natural, shortest), length);
    const int start = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                      length - thumb, option.upsideDown);
    return horizontal ? QRect(option.rect.left() + start, option.rect.top(), thumb, option.rect.height())
                      : QRect(option.rect.left(), option.rect.top() + start, option.rect.width(), thumb);
}

void drawScrollBar(const QStyleOptionSlider& option, const QRect& thumb, QPainter& painter) {
    constexpr int gap = 3;
    if (option.minimum == option.maximum) {
        return;
    }
    const bool held = option.state.testFlag(QStyle::State_Sunken) || isHovered(option);
    const QRectF bar = QRectF(thumb).adjusted(gap, gap, -gap, -gap);
    drawRounded(painter, bar, held ? controlLineColour(option.palette) : scrollColour(option.palette), Qt::NoPen,
                std::min(bar.width(), bar.height()) / 2);
}

}  // namespace sorvik
