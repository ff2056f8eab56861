#pragma once

#include <QWidget>

namespace sorvik {

/// What stands in the place of an empty list. The drops themselves are the window's.
class DropZoneView final : public QWidget {
    Q_OBJECT

public:
    explicit DropZoneView(QWidget* parent = nullptr);

    /// Shows that what is being dragged over the window would be taken.
    void setInviting(bool inviting);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool inviting_ = false;
};

}  // namespace sorvik
