#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QWidget;

namespace sorvik {

/// The program's colours. Secondary text is QPalette::PlaceholderText, the accent is QPalette::Highlight.
[[nodiscard]] QPalette themePalette(bool dark);

/// Of what went wrong, on QPalette::Base or QPalette::Window of the palette.
[[nodiscard]] QColor failureColour(const QPalette& palette);

/// Of the lines between and around controls.
[[nodiscard]] QColor lineColour(const QPalette& palette);

/// Of the outlines by which a control is known (fields, check boxes): three to one against its surroundings.
[[nodiscard]] QColor controlLineColour(const QPalette& palette);

/// Of the thumb of a scroll bar at rest.
[[nodiscard]] QColor scrollColour(const QPalette& palette);

/// Style and colours for the whole program; to be called again when light and dark change. Main thread.
void applyTheme(bool dark);

// The scale of type, made from a widget's or the program's font.
enum class TextStyle { title, headline, body, caption };

[[nodiscard]] QFont styledFont(const QFont& font, TextStyle style);

/// Gives a label or other widget one of the styles, and secondary text the palette's secondary colour.
void setTextStyle(QWidget& widget, TextStyle style);
void setSecondary(QWidget& widget);

}  // namespace sorvik
