#pragma once

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QProcess>
#include <QUuid>

namespace sorvik {

/// A session bus of the test's own, for as long as it lives.
class PrivateBus {
public:
    PrivateBus() {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        while (!daemon_.canReadLine() && daemon_.waitForReadyRead(20000)) {
        }
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
        EXPECT_FALSE(address_.isEmpty()) << "no dbus-daemon";
    }
    ~PrivateBus() {
        daemon_.terminate();
        daemon_.waitForFinished();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] const QString& address() const { return address_; }

    /// A new connection at each call, as if from another process.
    [[nodiscard]] QDBusConnection connection() const {
        return QDBusConnection::connectToBus(address_, QUuid::createUuid().toString());
    }

private:
    QProcess daemon_;
    QString address_;
};

}  // namespace sorvik
