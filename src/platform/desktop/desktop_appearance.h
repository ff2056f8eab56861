#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariant>

class QDBusMessage;

namespace sorvik {

/// Whether the desktop asks for dark windows, by its portal's setting `color-scheme`. Light until the portal has
/// answered, and for good where there is none. Main thread; nothing blocks.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] bool isDark() const { return dark_; }

    /// Follows the portal of the user's session.
    void start();

    /// Follows the portal on this bus.
    void follow(const QDBusConnection& bus);

signals:
    void changed();

private:
    Q_SLOT void settingChanged(const QDBusMessage& message);

    void ask(const QDBusConnection& bus, const QString& method);
    void take(const QVariant& scheme);

    bool dark_ = false;
};

}  // namespace sorvik
