#pragma once

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>
#include <QUuid>

#include <csignal>

namespace sorvik {

/// A session bus of the test's own, for as long as it lives; always at the same address, also after a new start.
class PrivateBus {
public:
    PrivateBus() { start(); }
    ~PrivateBus() {
        signal(SIGCONT);
        stop();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    void start() {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                       QStringLiteral("--address=") + address()});
        EXPECT_TRUE(daemon_.waitForReadyRead()) << "no dbus-daemon";
    }
    void stop() {
        daemon_.kill();
        daemon_.waitForFinished();
    }
    void signal(int number) const { ::kill(static_cast<pid_t>(daemon_.processId()), number); }

    [[nodiscard]] QString address() const {
        return QStringLiteral("unix:path=") + folder_.filePath(QStringLiteral("bus"));
    }

    /// A new connection at each call, as if from another process.
    [[nodiscard]] QDBusConnection connection() const {
        return QDBusConnection::connectToBus(address(), QUuid::createUuid().toString());
    }

private:
    QTemporaryDir folder_;
    QProcess daemon_;
};

}  // namespace sorvik
