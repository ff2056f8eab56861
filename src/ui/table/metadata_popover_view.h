#pragma once

#include <QFrame>
#include <QMap>
#include <QString>

namespace sorvik {

/// A picture's metadata, by label. Goes away with a click outside or Escape.
class MetadataPopoverView final : public QFrame {
    Q_OBJECT

public:
    explicit MetadataPopoverView(const QMap<QString, QString>& metadata, QWidget* parent = nullptr);

    /// Opens below or above something on the screen, in global coordinates; deletes itself when closed.
    void popUp(const QRect& anchor);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace sorvik
