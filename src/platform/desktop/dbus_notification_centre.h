#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

#include "platform/notification_centre.h"

class QDBusMessage;
class QDBusPendingCall;

namespace sorvik {

/// The desktop's notification daemon, org.freedesktop.Notifications. Main thread only; connects to the bus when it is
/// first needed and again when the bus was lost. Never waits: neither for a bus nor for a daemon.
class DBusNotificationCentre final : public QObject, public NotificationCentre {
    Q_OBJECT

public:
    /// No address means the session's bus.
    explicit DBusNotificationCentre(QString busAddress = {}, QObject* parent = nullptr);
    ~DBusNotificationCentre() override;

    /// Granted when a daemon runs or can be started. The options are the daemon's business.
    void requestAuthorization(NotificationOptions options, AuthorizationAnswer answer) override;

    /// Of several requests under one identifier that come while the daemon owes an answer, the newest is sent; those
    /// that it replaces are answered without an error.
    void add(const NotificationRequest& request, AddAnswer answer) override;

signals:
    /// The user clicked on a notification.
    void activated(const QString& identifier);

private slots:
    void onNotificationClosed(uint id, uint reason, const QDBusMessage& message);
    void onActionInvoked(uint id, const QString& action, const QDBusMessage& message);
    void onNameOwnerChanged(const QString& name, const QString& from, const QString& to, const QDBusMessage& message);

private:
    using Step = std::function<void(const std::optional<QString>& connectionError)>;

    struct Delivery {
        NotificationRequest request;
        AddAnswer answer;
    };

    /// What was last shown under an identifier.
    struct Entry {
        uint id = 0;  ///< the daemon's number, never 0 once shown
        QString daemon;
        bool isOpen = false;  ///< may still be replaced
        bool isOnItsWay = false;
        std::optional<Delivery> next;
    };

    void whenConnected(Step step);
    void connectToBus();
    void connected(const QDBusConnection& connection);
    void subscribe();
    void call(const QDBusMessage& message, std::function<void(const QDBusPendingCall&)> handle);
    void askForActivatable(const QString& reason, const AuthorizationAnswer& answer);
    void send(const Delivery& delivery);
    void sendToDaemon(const Delivery& delivery);
    void ended(const Delivery& delivery, const std::optional<QString>& error);
    void forgetShown();
    [[nodiscard]] QHash<QString, Entry>::iterator findShown(uint id, const QDBusMessage& message);

    QString busAddress_;
    std::optional<QDBusConnection> connection_;
    bool isConnecting_ = false;
    std::vector<Step> waitingSteps_;
    QHash<QString, Entry> entries_;  ///< by identifier
};

}  // namespace sorvik
