#pragma once

#include <QProperty>
#include <QWidget>

class QLabel;
class QSlider;

namespace sorvik {

/// A setting as a slider between its title and its value, with a line of explanation below. What the user does lands on
/// whole steps from the lower bound: 5 where the upper bound is above 10, else 1. A value that was set in another way,
/// between steps or out of range, is shown and left as it is.
class FormatCompressionSlider final : public QWidget {
    Q_OBJECT

public:
    struct Range {
        int lower;
        int upper;
    };

    /// `value` must outlive the widget.
    FormatCompressionSlider(const QString& title, QProperty<double>& value, Range range, QString unit,
                            const QString& description, QWidget* parent = nullptr);

    [[nodiscard]] QSlider& slider() const { return *slider_; }

    /// The widths of titles, so that sliders one below the other begin at one edge.
    [[nodiscard]] int titleWidth() const;
    void setTitleWidth(int width);

private:
    void layOut(const QString& description);
    void connectSlider();
    void showValue();

    /// Where an action of QAbstractSlider leads to from the value as it is.
    [[nodiscard]] int target(int action) const;

    QProperty<double>& value_;
    const Range range_;
    const int step_;
    const QString unit_;
    QLabel* title_;
    QSlider* slider_;
    QLabel* valueLabel_;
    QPropertyNotifier observer_;
};

}  // namespace sorvik
