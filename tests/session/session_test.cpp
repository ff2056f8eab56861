#include <QTest>

#include "desktop_session.h"

namespace sorvik {
namespace {

constexpr int patience = 60000;  // milliseconds; only a hang takes that long

void copySample(const QString& name, const QString& to) {
    ASSERT_TRUE(QFile::copy(QStringLiteral(SORVIK_TEST_DATA "/") + name, to));
}

/// Until the program has said a line.
bool says(QProcess& program, QByteArray& said, const char* words) {
    return QTest::qWaitFor(
        [&] {
            said += program.readAll();
            return said.contains(words);
        },
        patience);
}

TEST(Session, ABatchEndsWithANotificationThatTheNextOneReplaces) {
    DesktopSession session;
    const QString first = session.path(QStringLiteral("first.jpg"));
    const QString second = session.path(QStringLiteral("second one.jpg"));
    copySample(QStringLiteral("jpeg/concert.jpg"), first);
    copySample(QStringLiteral("jpeg/iptc.jpg"), second);
    const auto program = session.start({first});
    QByteArray said;
    ASSERT_TRUE(says(*program, said, "UpdateController initialized")) << said.toStdString();

    session.press(QStringLiteral("ctrl+Return"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return session.notifications().shown.size() == 1; }, patience));
    const auto shown = session.notifications().shown.front();
    EXPECT_EQ(shown.application, QStringLiteral("Sorvik"));
    EXPECT_EQ(shown.title, QStringLiteral("Sorvik - Conversion Complete"));
    EXPECT_EQ(shown.body, QStringLiteral("1 file converted successfully."));
    EXPECT_EQ(shown.replaces, 0U);
    EXPECT_TRUE(QFile::exists(session.path(QStringLiteral("first.png"))));

    // A second start hands its files to the window that is there and ends.
    const auto other = session.start({second, session.path(QStringLiteral("missing.jpg"))});
    ASSERT_TRUE(other->waitForFinished(patience));
    EXPECT_EQ(other->exitCode(), 0) << other->readAll().toStdString();
    session.press(QStringLiteral("ctrl+Return"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return session.notifications().shown.size() == 2; }, patience));
    EXPECT_EQ(session.notifications().shown.back().body, QStringLiteral("1 files converted successfully, 1 failed."));
    EXPECT_NE(session.notifications().shown.back().replaces, 0U);
    EXPECT_TRUE(QFile::exists(session.path(QStringLiteral("second one.png"))));

    // No other window keeps the program alive.
    session.press(QStringLiteral("ctrl+comma"));
    session.waitForWindow(QStringLiteral("^Preferences"));
    session.press(QStringLiteral("ctrl+q"));
    EXPECT_TRUE(program->waitForFinished(patience));
    EXPECT_EQ(program->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(session.notifications().shown.size(), 2U) << "one notification a batch";
}

}  // namespace
}  // namespace sorvik
