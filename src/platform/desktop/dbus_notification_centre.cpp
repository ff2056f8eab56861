#include "platform/desktop/dbus_notification_centre.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFuture>
#include <QPromise>
#include <QThreadPool>
#include <QVariantMap>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

namespace sorvik {
namespace {

const QString daemonName = QStringLiteral("org.freedesktop.Notifications");
const QString daemonPath = QStringLiteral("/org/freedesktop/Notifications");
const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");
const QString defaultAction = QStringLiteral("default");

constexpr int expiryOfTheDaemon = -1;

QDBusMessage busCall(const QString& method) {
    return QDBusMessage::createMethodCall(busName, busPath, busName, method);
}

QDBusMessage notifyCall(const NotificationRequest& request, uint replacesId) {
    QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("sorvik")}};
    if (request.sound) {
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("complete"));
    }
    QDBusMessage message = QDBusMessage::createMethodCall(daemonName, daemonPath, daemonName, QStringLiteral("Notify"));
    message << QStringLiteral("Sorvik") << replacesId << QStringLiteral("sorvik") << request.title << request.body
            << QStringList{defaultAction, QStringLiteral("Show")} << hints << expiryOfTheDaemon;
    return message;
}

/// For one line of a log, however long a peer's words are.
QString errorText(const QDBusError& error) {
    constexpr qsizetype longest = 300;
    return (error.message().isEmpty() ? error.name() : error.message()).left(longest).simplified();
}

QDBusConnection openConnection(const QString& address) {
    static std::atomic<int> count = 0;
    const QString name = QStringLiteral("sorvik_notifications_%1").arg(++count);
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                             : QDBusConnection::connectToBus(address, name);
}

}  // namespace

DBusNotificationCentre::DBusNotificationCentre(QString busAddress, QObject* parent)
    : QObject(parent), busAddress_(std::move(busAddress)) {}

DBusNotificationCentre::~DBusNotificationCentre() {
    if (connection_) {
        QDBusConnection::disconnectFromBus(connection_->name());
    }
}

void DBusNotificationCentre::requestAuthorization(NotificationOptions, AuthorizationAnswer answer) {
    whenConnected([this, answer = std::move(answer)](const std::optional<QString>& connectionError) {
        if (connectionError) {
            answer(false, connectionError);
            return;
        }
        call(busCall(QStringLiteral("GetNameOwner")) << daemonName, [this, answer](const QDBusPendingCall& reply) {
            if (reply.isError()) {
                askForActivatable(errorText(reply.error()), answer);
            } else {
                answer(true, std::nullopt);
            }
        });
    });
}

void DBusNotificationCentre::askForActivatable(const QString& reason, const AuthorizationAnswer& answer) {
    call(busCall(QStringLiteral("ListActivatableNames")), [reason, answer](const QDBusPendingCall& call) {
        const QDBusPendingReply<QStringList> reply = call;
        const bool canBeStarted = !reply.isError() && reply.value().contains(daemonName);
        answer(canBeStarted, canBeStarted ? std::nullopt : std::optional(reason));
    });
}

void DBusNotificationCentre::add(const NotificationRequest& request, AddAnswer answer) {
    Delivery delivery{request, std::move(answer)};
    Entry& entry = entries_[request.identifier];
    if (!entry.isOnItsWay) {
        send(delivery);
    } else if (const auto superseded = std::exchange(entry.next, std::move(delivery))) {
        superseded->answer(std::nullopt);
    }
}

void DBusNotificationCentre::send(const Delivery& delivery) {
    entries_[delivery.request.identifier].isOnItsWay = true;
    whenConnected([this, delivery](const std::optional<QString>& connectionError) {
        if (connectionError) {
            ended(delivery, connectionError);
        } else {
            sendToDaemon(delivery);
        }
    });
}

void DBusNotificationCentre::sendToDaemon(const Delivery& delivery) {
    const Entry& previous = entries_[delivery.request.identifier];
    const uint replacesId = previous.isOpen ? previous.id : 0;
    call(notifyCall(delivery.request, replacesId), [this, delivery](const QDBusPendingCall& call) {
        const QDBusPendingReply<uint> reply = call;
        if (reply.isError()) {
            ended(delivery, errorText(reply.error()));
            return;
        }
        Entry& entry = entries_[delivery.request.identifier];
        entry.id = reply.value();
        entry.daemon = reply.reply().service();
        entry.isOpen = true;
        ended(delivery, std::nullopt);
    });
}

void DBusNotificationCentre::ended(const Delivery& delivery, const std::optional<QString>& error) {
    Entry& entry = entries_[delivery.request.identifier];
    entry.isOnItsWay = false;
    if (const auto next = std::exchange(entry.next, std::nullopt)) {
        send(*next);
    }
    delivery.answer(error);
}

void DBusNotificationCentre::call(const QDBusMessage& message, std::function<void(const QDBusPendingCall&)> handle) {
    auto* watcher = new QDBusPendingCallWatcher(connection_->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [handle = std::move(handle)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                handle(*finished);
            });
}

void DBusNotificationCentre::whenConnected(Step step) {
    if (connection_ && connection_->isConnected()) {
        step(std::nullopt);
        return;
    }
    waitingSteps_.push_back(std::move(step));
    if (!std::exchange(isConnecting_, true)) {
        connectToBus();
    }
}

// In a thread of the pool, since a connection is opened by waiting for the bus to say hello.
void DBusNotificationCentre::connectToBus() {
    if (connection_) {
        QDBusConnection::disconnectFromBus(connection_->name());
        connection_.reset();
    }
    const auto promise = std::make_shared<QPromise<QDBusConnection>>();
    promise->future().then(this, [this](const QDBusConnection& connection) { connected(connection); });
    QThreadPool::globalInstance()->start([promise, address = busAddress_] {
        promise->start();
        promise->addResult(openConnection(address));
        promise->finish();
    });
}

void DBusNotificationCentre::connected(const QDBusConnection& connection) {
    isConnecting_ = false;
    connection_ = connection;
    forgetShown();
    std::optional<QString> error;
    if (connection.isConnected()) {
        subscribe();
    } else {
        error = errorText(connection.lastError());
    }
    for (const Step& step : std::exchange(waitingSteps_, {})) {
        step(error);
    }
}

// A subscription that names the sender would wait for the bus to tell who that is; the slots look at it instead.
void DBusNotificationCentre::subscribe() {
    connection_->connect({}, daemonPath, daemonName, QStringLiteral("NotificationClosed"), this,
                         SLOT(onNotificationClosed(uint, uint, QDBusMessage)));
    connection_->connect({}, daemonPath, daemonName, QStringLiteral("ActionInvoked"), this,
                         SLOT(onActionInvoked(uint, QString, QDBusMessage)));
    connection_->connect({}, busPath, busName, QStringLiteral("NameOwnerChanged"), {daemonName}, {}, this,
                         SLOT(onNameOwnerChanged(QString, QString, QString, QDBusMessage)));
}

void DBusNotificationCentre::onNotificationClosed(uint id, uint, const QDBusMessage& message) {
    if (const auto entry = findShown(id, message); entry != entries_.end()) {
        entry->isOpen = false;
    }
}

// Also of one that is closed: some daemons close before they tell of the click.
void DBusNotificationCentre::onActionInvoked(uint id, const QString& action, const QDBusMessage& message) {
    if (const auto entry = findShown(id, message); action == defaultAction && entry != entries_.end()) {
        emit activated(entry.key());
    }
}

void DBusNotificationCentre::onNameOwnerChanged(const QString&, const QString&, const QString&,
                                                const QDBusMessage& message) {
    if (message.service() == busName) {
        forgetShown();
    }
}

void DBusNotificationCentre::forgetShown() {
    for (Entry& entry : entries_) {
        entry.isOpen = false;
    }
}

QHash<QString, DBusNotificationCentre::Entry>::iterator DBusNotificationCentre::findShown(uint id,
                                                                                          const QDBusMessage& message) {
    return std::find_if(entries_.begin(), entries_.end(),
                        [&](const Entry& entry) { return entry.id == id && entry.daemon == message.service(); });
}

}  // namespace sorvik
