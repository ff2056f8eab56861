// Starts of the program that meet, in processes of their own.

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <signal.h>
#include <memory>
#include <vector>

#include "platform/desktop/single_instance.h"
#include "platform/log.h"

namespace sorvik {
namespace {

using Role = SingleInstance::Role;

QString text(const char* literal) { return QString::fromUtf8(literal); }

/// Another start of the program; killed at the end.
class Start {
public:
    explicit Start(const QStringList& paths) { process_.start(text(SORVIK_SECOND_START), paths); }
    ~Start() {
        process_.kill();
        process_.waitForFinished();
    }
    Start(const Start&) = delete;
    Start& operator=(const Start&) = delete;

    /// Its role, and what it was handed; waits for `lines` of them, with the event loop running.
    QStringList said(qsizetype lines = 1) {
        const auto enough = [&] {
            output_ += process_.readAllStandardOutput();
            return output_.count('\n') >= lines;
        };
        EXPECT_TRUE(QTest::qWaitFor(enough, 60000)) << output_.constData();
        return QString::fromUtf8(output_).split(u'\n', Qt::SkipEmptyParts);
    }

    void signal(int number) const { ::kill(static_cast<pid_t>(process_.processId()), number); }
    void waitForEnd() { EXPECT_TRUE(process_.waitForFinished(20000)); }

private:
    QProcess process_;
    QByteArray output_;
};

class SingleInstanceTest : public testing::Test {
protected:
    SingleInstanceTest() {
        setLogSink({});
        qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
        qputenv("WAYLAND_DISPLAY", "wayland-7");
        qunsetenv("DESKTOP_STARTUP_ID");
        qputenv("XDG_ACTIVATION_TOKEN", "token 1");
    }

    [[nodiscard]] QString socketPath() const {
        const QDir place(folder.path());
        return place.filePath(place.entryList({text("*.socket")}, QDir::System).value(0));
    }

    const QTemporaryDir folder;
};

TEST_F(SingleInstanceTest, HandsFilesToTheFirst) {
    SingleInstance first;
    QSignalSpy received(&first, &SingleInstance::received);
    ASSERT_EQ(first.start({}), Role::first);
    EXPECT_EQ(QFileInfo(socketPath()).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);

    QStringList paths{text("/tmp/it's \"1\" #2 100%/größe 写真.png"), text("/tmp/two\nlines")};
    for (int number = 0; number < 10'000; ++number) {
        paths << text("/home/someone/Pictures/holiday/picture %1.jpeg").arg(number);
    }
    EXPECT_EQ(Start(paths).said(), QStringList{text("handed over")});
    ASSERT_TRUE(received.count() == 1 || received.wait(20000));
    QStringList arrived;
    for (const QUrl& url : received.first().at(0).value<QList<QUrl>>()) {
        arrived << url.toLocalFile();
    }
    EXPECT_TRUE(arrived == paths) << arrived.size();
    EXPECT_EQ(received.first().at(1).toByteArray(), "token 1");

    EXPECT_EQ(Start({}).said(), QStringList{text("handed over")}) << "without files the window is wanted";
    qputenv("WAYLAND_DISPLAY", "wayland-8");
    EXPECT_EQ(Start({}).said(), QStringList{text("first")}) << "another display has a first one of its own";
}

TEST_F(SingleInstanceTest, OneOfManyAtOnceIsFirst) {
    constexpr int count = 8;
    std::vector<std::unique_ptr<Start>> starts;
    for (int number = 0; number < count; ++number) {
        starts.push_back(std::make_unique<Start>(QStringList{text("/file %1").arg(number)}));
    }
    Start* first = nullptr;
    int handedOver = 0;
    for (const auto& start : starts) {
        const QString role = start->said().first();
        first = role == text("first") ? start.get() : first;
        handedOver += role == text("handed over") ? 1 : 0;
    }
    EXPECT_EQ(handedOver, count - 1);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->said(count).size(), count);
}

TEST_F(SingleInstanceTest, ACrashedOneIsReplaced) {
    Start crashed({});
    ASSERT_EQ(crashed.said(), QStringList{text("first")});
    crashed.signal(SIGKILL);
    crashed.waitForEnd();
    EXPECT_TRUE(QFileInfo::exists(socketPath())) << "the stale socket is the point";
    {
        SingleInstance next;
        EXPECT_EQ(next.start({}), Role::first);
        EXPECT_EQ(Start({}).said(), QStringList{text("handed over")});
    }
    SingleInstance afterwards;
    EXPECT_EQ(afterwards.start({}), Role::first);
}

TEST_F(SingleInstanceTest, AHangingOneIsNotWaitedForAndLearnsNothing) {
    Start hanging({});
    ASSERT_EQ(hanging.said(), QStringList{text("first")});
    hanging.signal(SIGSTOP);
    QElapsedTimer time;
    time.start();
    {
        SingleInstance second;
        EXPECT_EQ(second.start({.urls = {QUrl(text("file:///kept"))}, .activationToken = {}}), Role::alone);
    }
    EXPECT_LT(time.elapsed(), 10'000);
    hanging.signal(SIGCONT);
    EXPECT_EQ(Start({text("/later")}).said(), QStringList{text("handed over")});
    EXPECT_EQ(hanging.said(2), (QStringList{text("first"), text("/later")}));
}

TEST_F(SingleInstanceTest, StrangeVisitorsCostNothing) {
    SingleInstance first;
    QSignalSpy received(&first, &SingleInstance::received);
    ASSERT_EQ(first.start({}), Role::first);
    const InstanceMessage proper{.urls = {QUrl(text("file:///a"))}, .activationToken = {}};
    const QByteArray whole = packMessage(proper).value();
    const std::vector<QByteArray> words{"",
                                        "\xff\xff\xff\xff garbage",
                                        QByteArray(4, '\0'),
                                        QByteArray("\0\0\0\x02[]", 6),
                                        QByteArray("\0\0\0\x0b{\"urls\":{}}", 15),
                                        QByteArray("\0\0\0\x04\xff\xfe\0\0", 8),
                                        whole.left(2),
                                        whole.chopped(1)};
    std::vector<std::unique_ptr<QLocalSocket>> visitors;
    for (const QByteArray& each : words) {
        visitors.push_back(std::make_unique<QLocalSocket>());
        visitors.back()->connectToServer(socketPath());
        ASSERT_TRUE(visitors.back()->waitForConnected());
        visitors.back()->write(each);
        visitors.back()->flush();
    }
    visitors.back()->abort();  // in the middle of a message
    for (std::size_t refused = 1; refused <= 5; ++refused) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return visitors[refused]->state() == QLocalSocket::UnconnectedState; }))
            << refused;
    }
    EXPECT_EQ(received.count(), 0);
    EXPECT_EQ(Start({text("/b")}).said(), QStringList{text("handed over")});
    EXPECT_TRUE(QTest::qWaitFor([&] { return received.count() == 1; }));
}

TEST_F(SingleInstanceTest, WithoutAPlaceToMeetItGoesOnAlone) {
    const QString socket = [this] {
        SingleInstance first;
        EXPECT_EQ(first.start({}), Role::first);
        return socketPath();
    }();
    const QString lock = socket.chopped(6) + text("lock");
    ASSERT_TRUE(QFile::remove(lock));
    for (const QString& taken : {socket, lock}) {
        ASSERT_TRUE(QDir().mkpath(taken + text("/something")));
        SingleInstance nowhere;
        EXPECT_EQ(nowhere.start({}), Role::alone) << qPrintable(taken);
        ASSERT_TRUE(QDir(taken).removeRecursively());
        QFile::remove(lock);
    }
}

TEST_F(SingleInstanceTest, WithoutARuntimeFolderItMakesAPrivateOne) {
    qunsetenv("XDG_RUNTIME_DIR");
    qputenv("TMPDIR", folder.path().toUtf8());
    SingleInstance first;
    EXPECT_EQ(first.start({}), Role::first);
    const QFileInfoList made = QDir(folder.path()).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_EQ(made.size(), 1);
    constexpr auto others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    EXPECT_EQ(made.first().permissions() & others, 0);
}

}  // namespace
}  // namespace sorvik
