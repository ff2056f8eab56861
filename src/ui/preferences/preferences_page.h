#pragma once

#include <QScrollArea>

class QComboBox;
class QLabel;
class QVBoxLayout;

namespace sorvik {

/// What one tab shows: a stack of controls that scrolls when it is higher than the window.
class PreferencesPage : public QScrollArea {
    Q_OBJECT

public:
    explicit PreferencesPage(QWidget* parent = nullptr);

protected:
    /// Where the controls go, from the top; the spacing is the distance of one thing from another.
    [[nodiscard]] QVBoxLayout& stack() const { return *stack_; }

private:
    QVBoxLayout* stack_;
};

[[nodiscard]] QLabel* makeHeadline(const QString& text);

/// A wrapped explanation in small secondary type.
[[nodiscard]] QLabel* makeCaption(const QString& text);

[[nodiscard]] QFrame* makeDivider();

/// Turning the wheel over the control scrolls the page instead of changing a setting in passing.
void leaveWheelToPage(QWidget& control);

}  // namespace sorvik
