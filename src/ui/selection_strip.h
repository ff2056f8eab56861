#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>

#include "ui/bottom_bar_state.h"

namespace sorvik {

/// What can be done with the checked rows. Shown while there are some.
class SelectionStrip final : public QWidget {
    Q_OBJECT

public:
    explicit SelectionStrip(QWidget* parent = nullptr);

    void show(const BottomBarState& state);

signals:
    void selectAllRequested();
    void outputFormatChosen(std::optional<ImageFormat> format);
    void updateAllRequested();
    void clearRequested();

private:
    void offer(const BottomBarState& state);

    QLabel* count_;
    QPushButton* selectAll_;
    QComboBox* picker_;
    QPushButton* updateAll_;
    QToolButton* clear_;
    std::vector<ImageFormat> offered_;
};

}  // namespace sorvik
