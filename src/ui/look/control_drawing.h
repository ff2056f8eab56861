#pragma once

#include <QStyle>
#include <QStyleOption>

class QPainter;

namespace sorvik {

// How each kind of control looks. HouseStyle says which is wanted; the geometry comes with the option.

void drawButtonPanel(const QStyleOption& option, QPainter& painter, bool primary);

/// Nothing behind a button that is raised only when it is pointed at.
void drawToolButtonPanel(const QStyleOption& option, QPainter& painter);

/// A ring that stands off the accent too: the accent outside, the window's colour inside.
void drawFocusRing(const QStyleOption& option, QPainter& painter);

void drawCheckIndicator(const QStyleOption& option, QPainter& painter);
void drawFieldPanel(const QStyleOption& option, QPainter& painter);
void drawTabShape(const QStyleOptionTab& option, QPainter& painter);

/// A quiet line of titles: no relief, a line below, a short one where a column can be dragged.
void drawHeaderSection(const QStyleOptionHeader& option, QPainter& painter);

/// A progress bar without a text.
void drawProgressGroove(const QStyleOptionProgressBar& option, QPainter& painter);

/// `arrow` is where the button's arrow goes.
void drawComboBox(const QStyleOptionComboBox& option, const QRect& arrow, QPainter& painter);

/// `handle` is a square with room for the ring of focus around the handle itself.
void drawSlider(const QStyleOptionSlider& option, const QRect& handle, QPainter& painter);

/// Only a thumb: no arrows, and what lies behind shows through. `thumb` spans the bar's width.
void drawScrollBar(const QStyleOptionSlider& option, const QRect& thumb, QPainter& painter);

/// Where the thumb of a scroll bar without arrows lies.
[[nodiscard]] QRect scrollBarThumb(const QStyleOptionSlider& option);

}  // namespace sorvik
