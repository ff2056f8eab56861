#include "platform/desktop/dbus_notification_centre.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>
#include <csignal>
#include <functional>
#include <memory>

#include "platform/log.h"
#include "private_bus.h"
#include "services/notification_service.h"

namespace sorvik {
namespace {

const QString daemonName = QStringLiteral("org.freedesktop.Notifications");
const QString daemonPath = QStringLiteral("/org/freedesktop/Notifications");

bool waitUntil(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 60000); }

/// A notification daemon that answers on demand.
class Daemon : public QDBusVirtualObject {
public:
    explicit Daemon(const QString& address) : connection_(QDBusConnection::connectToBus(address, freshName())) {
        registered = connection_.registerService(daemonName) && connection_.registerVirtualObject(daemonPath, this);
    }
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;
    ~Daemon() override { QDBusConnection::disconnectFromBus(connection_.name()); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        calls << message;
        if (answersAtOnce) {
            const uint replaced = message.arguments().value(1).toUInt();
            answer(replaced != 0 ? replaced : ++lastId_);
        }
        return true;
    }

    void answer(const QVariant& value) { connection_.send(calls.back().createReply(value)); }
    void refuse(const QString& words) {
        connection_.send(calls.back().createErrorReply(QStringLiteral("org.sorvik.Refused"), words));
    }
    void tell(const QString& signal, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(daemonPath, daemonName, signal);
        message.setArguments(arguments);
        connection_.send(message);
        // The bus has passed it on when it answers this.
        connection_.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                                        QStringLiteral("org.freedesktop.DBus"),
                                                        QStringLiteral("GetId")));
    }

    [[nodiscard]] QVariant argument(qsizetype call, qsizetype index) const {
        return calls.value(call).arguments().value(index);
    }
    [[nodiscard]] uint replacesId(qsizetype call) const { return argument(call, 1).toUInt(); }

    bool registered = false;
    bool answersAtOnce = true;
    QList<QDBusMessage> calls;

private:
    static QString freshName() {
        static int count = 0;
        return QStringLiteral("daemon_%1").arg(++count);
    }

    QDBusConnection connection_;
    uint lastId_ = 6;
};

class Notifications : public testing::Test {
protected:
    Notifications() {
        setLogSink([this](const QString& line) { lines << line; });
        QObject::connect(&centre, &DBusNotificationCentre::activated, &centre,
                         [this](const QString& identifier) { activated << identifier; });
    }
    ~Notifications() override { setLogSink({}); }

    void startDaemon() {
        daemon = std::make_unique<Daemon>(bus.address());
        ASSERT_TRUE(daemon->registered);
    }

    /// Sends one and waits until the daemon's answer is known.
    void show() {
        std::optional<std::optional<QString>> answer;
        NotificationRequest request;
        request.identifier = QStringLiteral("conversion-complete");
        centre.add(request, [&](const std::optional<QString>& error) { answer = error; });
        ASSERT_TRUE(waitUntil([&] { return answer.has_value(); }));
        EXPECT_EQ(answer->value_or(QString()).toStdString(), "");
    }

    /// Whatever the bus has passed on before has arrived once this has come back.
    void settle() {
        bool answered = false;
        centre.requestAuthorization({}, [&](bool, const std::optional<QString>&) { answered = true; });
        ASSERT_TRUE(waitUntil([&] { return answered; }));
    }

    PrivateBus bus;
    std::unique_ptr<Daemon> daemon;
    QStringList lines;
    QStringList activated;
    DBusNotificationCentre centre{bus.address()};
    NotificationService service{centre};
};

TEST_F(Notifications, SayWhatTheBatchDid) {
    startDaemon();
    service.requestPermission();
    service.sendCompletionNotification(3, 1, false);
    ASSERT_TRUE(waitUntil([&] { return daemon->calls.size() == 1; }));
    EXPECT_EQ(daemon->calls.front().member(), QStringLiteral("Notify"));
    EXPECT_EQ(daemon->calls.front().signature(), QStringLiteral("susssasa{sv}i"));
    EXPECT_EQ(daemon->argument(0, 0), QStringLiteral("Sorvik"));
    EXPECT_EQ(daemon->replacesId(0), 0U);
    EXPECT_EQ(daemon->argument(0, 2), QStringLiteral("sorvik"));
    EXPECT_EQ(daemon->argument(0, 3), QStringLiteral("Sorvik - Conversion Complete"));
    EXPECT_EQ(daemon->argument(0, 4), QStringLiteral("3 files converted successfully, 1 failed."));
    const auto hints = qdbus_cast<QVariantMap>(daemon->argument(0, 6));
    EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")), QStringLiteral("sorvik"));
    EXPECT_TRUE(hints.contains(QStringLiteral("sound-name")));
    settle();
    EXPECT_EQ(lines, QStringList());
}

TEST_F(Notifications, ReplaceTheOneThatStillStands) {
    startDaemon();
    show();
    show();
    EXPECT_EQ(daemon->replacesId(1), 7U);
    Daemon stranger(bus.address());  // has no right to the name, but may send what it likes
    stranger.tell(QStringLiteral("NotificationClosed"), {7U, 1U});
    daemon->tell(QStringLiteral("NotificationClosed"), {8U, 1U});
    settle();
    show();
    EXPECT_EQ(daemon->replacesId(2), 7U) << "another program's was closed";
    daemon->tell(QStringLiteral("NotificationClosed"), {7U, 1U});
    settle();
    show();
    EXPECT_EQ(daemon->replacesId(3), 0U);
    daemon.reset();
    startDaemon();
    settle();
    show();
    EXPECT_EQ(daemon->replacesId(0), 0U) << "a daemon that has started anew numbers anew";
}

TEST_F(Notifications, WaitForTheirPredecessorsNumber) {
    startDaemon();
    daemon->answersAtOnce = false;
    for (int count = 1; count <= 3; ++count) {
        service.sendCompletionNotification(count, 0, false);
    }
    ASSERT_TRUE(waitUntil([&] { return daemon->calls.size() == 1; }));
    daemon->answersAtOnce = true;
    daemon->answer(9U);
    ASSERT_TRUE(waitUntil([&] { return daemon->calls.size() == 2; }));
    settle();
    ASSERT_EQ(daemon->calls.size(), 2);
    EXPECT_EQ(daemon->replacesId(1), 9U);
    EXPECT_EQ(daemon->argument(1, 4), QStringLiteral("3 files converted successfully.")) << "only the newest";
}

TEST_F(Notifications, TellWhenTheyAreClicked) {
    startDaemon();
    show();
    Daemon stranger(bus.address());
    stranger.tell(QStringLiteral("ActionInvoked"), {7U, QStringLiteral("default")});
    daemon->tell(QStringLiteral("ActionInvoked"), {8U, QStringLiteral("default")});
    daemon->tell(QStringLiteral("ActionInvoked"), {QStringLiteral("rubbish")});
    daemon->tell(QStringLiteral("NotificationClosed"), {7U, 2U});
    daemon->tell(QStringLiteral("ActionInvoked"), {7U, QStringLiteral("default")});
    settle();
    EXPECT_EQ(activated, QStringList(QStringLiteral("conversion-complete")));
}

TEST_F(Notifications, PrintWhatADaemonDoesWrong) {
    const QString failed = QStringLiteral("Failed to send notification: ");
    const auto sendAndWait = [&](const auto& misbehave) {
        const auto calls = daemon->calls.size();
        const auto printed = lines.size();
        service.sendCompletionNotification(1, 0, false);
        ASSERT_TRUE(waitUntil([&] { return daemon->calls.size() > calls; }));
        misbehave();
        ASSERT_TRUE(waitUntil([&] { return lines.size() > printed; }));
        EXPECT_TRUE(lines.back().startsWith(failed)) << lines.back().toStdString();
        EXPECT_LT(lines.back().size(), 400);
    };
    startDaemon();
    daemon->answersAtOnce = false;
    sendAndWait([&] { daemon->refuse(QStringLiteral("no\nroom")); });
    EXPECT_EQ(lines.back(), failed + QStringLiteral("no room"));
    sendAndWait([&] { daemon->refuse(QString(20 << 20, QLatin1Char('x'))); });
    sendAndWait([&] { daemon->answer(QString(20 << 20, QLatin1Char('x'))); });
    sendAndWait([&] { daemon.reset(); });
}

TEST_F(Notifications, PrintThatNobodyShowsThem) {
    service.requestPermission();
    service.sendCompletionNotification(1, 0, false);
    EXPECT_EQ(lines, QStringList()) << "answered before there was a bus";
    ASSERT_TRUE(waitUntil([&] { return lines.size() == 2; }));
    EXPECT_EQ(lines.filter(QStringLiteral("Notification permission error: ")).size(), 1);
    EXPECT_EQ(lines.filter(QStringLiteral("Failed to send notification: ")).size(), 1);
    DBusNotificationCentre nowhere(QStringLiteral("unix:path=/nowhere/bus"));
    NotificationService(nowhere).sendCompletionNotification(1, 0, false);
    ASSERT_TRUE(waitUntil([&] { return lines.size() == 3; }));
    EXPECT_TRUE(lines.back().startsWith(QStringLiteral("Failed to send notification: ")));
}

TEST_F(Notifications, NeverWaitForABusThatStandsStill) {
    startDaemon();
    show();
    bus.signal(SIGSTOP);
    DBusNotificationCentre late(bus.address());
    QElapsedTimer timer;
    timer.start();
    service.requestPermission();
    service.sendCompletionNotification(1, 0, false);
    NotificationService(late).sendCompletionNotification(2, 0, false);
    QTest::qWait(300);
    EXPECT_LT(timer.elapsed(), 10000) << "the bus would have to be waited for 25 seconds";
    bus.signal(SIGCONT);
    EXPECT_TRUE(waitUntil([&] { return daemon->calls.size() == 3; }));
    settle();
    EXPECT_EQ(lines, QStringList());
}

TEST_F(Notifications, FindABusThatCameBack) {
    startDaemon();
    show();
    daemon.reset();
    bus.stop();
    service.sendCompletionNotification(1, 0, false);
    ASSERT_TRUE(waitUntil([&] { return lines.size() == 1; }));
    bus.start();
    startDaemon();
    show();
    EXPECT_EQ(daemon->replacesId(0), 0U);
}

}  // namespace
}  // namespace sorvik
