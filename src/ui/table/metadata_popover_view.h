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

    /// Opens at a point of the screen, inside the screen; deletes itself when closed.
    void popUp(const QRect& anchor);
};

}  // namespace sorvik
