#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QWidget>

#include "ui/bottom_bar_state.h"
#include "ui/selection_strip.h"

namespace sorvik {

/// The bar below the tabs: the checked rows' strip, and the strip with the button that works the list off.
class BottomBarView final : public QWidget {
    Q_OBJECT

public:
    explicit BottomBarView(QWidget* parent = nullptr);

    void show(const BottomBarState& state);

    [[nodiscard]] SelectionStrip& selectionStrip() { return *selection_; }

signals:
    void resetRequested();
    void convertRequested();
    void stopRequested();
    void preferencesRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makeMainStrip();
    [[nodiscard]] QWidget* makeReadyNote();
    [[nodiscard]] QWidget* makeProgressNote();
    void nameControls();
    void turnArc();

    SelectionStrip* selection_;
    QWidget* ready_ = nullptr;
    QLabel* readyLabel_;
    QLabel* messageLabel_;
    QWidget* progress_ = nullptr;
    QLabel* progressLabel_;
    QProgressBar* progressBar_;
    QPushButton* stop_;
    QPushButton* again_;
    QPushButton* primary_;
    QToolButton* preferences_;
    QTimer arcTimer_;
    std::optional<BottomBarState> shown_;
};

}  // namespace sorvik
