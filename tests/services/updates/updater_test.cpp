// Checks against a server on this computer that behaves well and badly.

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>
#include <functional>
#include <memory>

#include "platform/defaults_store.h"
#include "platform/log.h"
#include "services/updates/updater.h"

namespace sorvik {
namespace {

using namespace std::chrono_literals;

constexpr auto lastCheckKey = "SULastCheckTime";

QString text(const char* literal) { return QString::fromUtf8(literal); }

QByteArray answer(const QByteArray& body, const QByteArray& status = "200 OK", const QByteArray& headers = {}) {
    return "HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

QByteArray feed(const QByteArray& version, const QByteArray& page = "https://example.org/new") {
    return R"({"version": ")" + version + R"(", "url": ")" + page + R"(", "notes": "Größer"})";
}

/// Gives each request to a function that has the socket.
class Server {
public:
    std::function<void(QTcpSocket&)> behave;
    QList<QByteArray> requests;

    Server() {
        EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
        QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] { welcome(); });
    }
    void answerWith(const QByteArray& bytes) {
        behave = [bytes](QTcpSocket& socket) {
            socket.write(bytes);
            socket.disconnectFromHost();
        };
    }
    [[nodiscard]] QUrl address() const { return QUrl(text("http://127.0.0.1:%1/feed.json").arg(server_.serverPort())); }

private:
    void welcome() {
        QTcpSocket* socket = server_.nextPendingConnection();
        auto request = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, request] {
            *request += socket->readAll();
            if (request->endsWith("\r\n\r\n")) {
                requests << *request;
                behave(*socket);
            }
        });
    }

    QTcpServer server_;
};

class Delegate final : public UpdaterDelegate {
public:
    bool mayCheck = true;
    bool unasked = false;
    QStringList told;

    bool updaterMayCheckForUpdates() override { return mayCheck; }
    bool updaterShouldPromptForPermissionToCheckForUpdates() override { return unasked; }
    void updaterDidFinishLoadingAppcast(const UpdateItem& item) override { told << text("loaded ") + item.version; }
    void updaterDidFindValidUpdate(const UpdateItem& item) override { told << text("found ") + item.version; }
    void updaterDidNotFindUpdate() override { told << text("none"); }
    void updaterDidNotFindUpdate(const QString& error) override { told << error; }
    void updaterWillInstallUpdate(const UpdateItem& item) override { told << text("installs ") + item.version; }
};

class UpdaterTest : public testing::Test {
protected:
    UpdaterTest() { setLogSink({}); }

    void start() { start(server.address()); }
    void start(const QUrl& address) {
        updater = std::make_unique<Updater>(
            Updater::Configuration{.feed = address,
                                   .currentVersion = text("1.9.0"),
                                   .schedule = {.startDelay = 10ms, .retryDelay = 3600s},
                                   .limits = {.size = 4096, .silence = 1000ms, .whole = 2000ms}},
            store);
        updater->start(&delegate);
    }

    /// What the delegate heard of a check by hand.
    QStringList check() {
        delegate.told.clear();
        updater->checkForUpdates();
        EXPECT_FALSE(updater->canCheckForUpdates) << "one at a time";
        EXPECT_TRUE(QTest::qWaitFor([this] { return updater->canCheckForUpdates.value(); }, 30000));
        return delegate.told;
    }
    QString error() { return check().value(0); }

    Server server;
    Delegate delegate;
    std::shared_ptr<DefaultsStore> store = std::make_shared<MemoryDefaultsStore>();
    std::unique_ptr<Updater> updater;
};

TEST_F(UpdaterTest, TellsOfANewerVersionAndSendsOnlyTheRequest) {
    start();
    QSignalSpy found(updater.get(), &Updater::updateFound);
    QSignalSpy notFound(updater.get(), &Updater::updateNotFound);
    server.answerWith(answer(feed("1.10")));
    EXPECT_EQ(check(), (QStringList{text("loaded 1.10"), text("found 1.10")}));
    EXPECT_EQ(found.value(0),
              (QVariantList{text("1.10"), QUrl(text("https://example.org/new")), text("Größer"), true}));
    EXPECT_EQ(updater->installFoundUpdate(), QUrl(text("https://example.org/new")));
    EXPECT_EQ(delegate.told.last(), text("installs 1.10"));
    const QByteArray request = server.requests.value(0).toLower();
    EXPECT_TRUE(request.startsWith("get /feed.json http/1.1\r\n")) << request.constData();
    EXPECT_TRUE(request.contains("user-agent: sorvik\r\n") && request.contains("accept-language: *\r\n"))
        << request.constData();
    EXPECT_FALSE(request.contains("cookie")) << request.constData();

    for (const char* version : {"1.9.0", "1.9", "1.8.99", "0.10"}) {
        server.answerWith(answer(feed(version), "200 OK", "Set-Cookie: who=you\r\n"));
        EXPECT_EQ(check().last(), text("none")) << version;
    }
    EXPECT_EQ(notFound.count(), 4);
    EXPECT_TRUE(updater->installFoundUpdate().isEmpty());
    EXPECT_FALSE(server.requests.last().toLower().contains("cookie")) << "cookies are not kept";
}

TEST_F(UpdaterTest, ForeignAnswersAreErrors) {
    start();
    QSignalSpy failed(updater.get(), &Updater::checkFailed);
    const QByteArray damaged = "The update feed is damaged";
    const QByteArray noVersion = "The update feed names no version";
    const QByteArray noPage = "The update feed names no page with a secure address";
    const std::vector<std::pair<QByteArray, QByteArray>> rows{
        {answer("<html>please log in</html>"), damaged},
        {answer(""), damaged},
        {answer("[1]"), damaged},
        {answer(QByteArray(3000, '[')), damaged},
        {answer("{\"version\": \"2\xff"), damaged},
        {answer("{}"), noVersion},
        {answer(feed("new")), noVersion},
        {answer(feed("2.0-beta")), noVersion},
        {answer(feed("99999999999999999999")), noVersion},
        {answer(feed("2.0", "http://example.org/")), noPage},
        {answer(feed("2.0", "javascript:alert(1)")), noPage},
        {answer(feed("2.0", "https:///etc/passwd")), noPage},
        {answer(QByteArray(5000, ' ')), "The update feed is too large"},
        {answer(feed("2.0"), "404 Not Found"), "The update server answered with status 404"},
        {answer(feed("2.0"), "302 Found", "Location: /elsewhere\r\n"),
         "The update server leads to an address that is not secure"},
        {answer(feed("2.0"), "302 Found", "Location: file:///etc/passwd\r\n"),
         "The update server answered with status 302"},
    };
    for (const auto& [bytes, expected] : rows) {
        server.answerWith(bytes);
        EXPECT_EQ(error().toStdString(), expected.toStdString()) << bytes.left(200).constData();
    }
    server.answerWith(answer(feed("2.0")).chopped(5));
    EXPECT_FALSE(error().isEmpty()) << "cut short";
    EXPECT_EQ(failed.count(), std::ssize(rows) + 1);
    EXPECT_TRUE(updater->installFoundUpdate().isEmpty());
}

TEST_F(UpdaterTest, AServerIsNotWaitedForLong) {
    start();
    const QString tooLong = text("The update server took too long");
    server.behave = [](QTcpSocket&) {};
    EXPECT_EQ(error(), tooLong) << "silence";
    server.behave = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        auto* timer = new QTimer(&socket);
        QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write(" "); });
        timer->start(100ms);
    };
    EXPECT_EQ(error(), tooLong) << "drop by drop";
    server.behave = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket,
                         [&socket] { socket.write(QByteArray(65536, ' ')); });
    };
    EXPECT_EQ(error(), text("The update feed is too large")) << "without end";
    server.behave = [](QTcpSocket& socket) { socket.abort(); };
    EXPECT_FALSE(error().isEmpty()) << "slammed door";

    server.behave = [](QTcpSocket&) {};
    updater->checkForUpdates();
    ASSERT_TRUE(QTest::qWaitFor([this] { return server.requests.size() >= 5; }, 20000));
    QElapsedTimer time;
    time.start();
    updater.reset();
    EXPECT_LT(time.elapsed(), 900) << "the end of the program does not wait for a server";
}

TEST_F(UpdaterTest, NeedsASafeAddress) {
    server.answerWith(answer(feed("2.0")));
    const std::vector<std::pair<const char*, bool>> rows{{"", false},
                                                         {"http://example.org/feed.json", false},
                                                         {"http://127.0.0.1.example.org/", false},
                                                         {"file:///etc/passwd", false},
                                                         {"https://", false},
                                                         {"https://example.org/feed.json", true},
                                                         {"http://[::1]:1/", true},
                                                         {"http://localhost:1/", true}};
    for (const auto& [address, usable] : rows) {
        start(QUrl(text(address)));
        EXPECT_EQ(updater->canCheckForUpdates.value(), usable) << address;
        updater->automaticallyChecksForUpdates = !usable;  // nothing follows
    }
    start();
    delegate.mayCheck = false;
    updater->checkForUpdates();
    QTest::qWait(200);
    EXPECT_TRUE(server.requests.isEmpty());
}

TEST_F(UpdaterTest, ChecksByItselfOnceADay) {
    server.answerWith(answer(feed("2.0")));
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    const auto checks = [this](bool asked, const QVariant& last, std::chrono::milliseconds patience) {
        store->setValue(text(lastCheckKey), last);
        delegate.unasked = !asked;
        start();
        QSignalSpy found(updater.get(), &Updater::updateFound);
        updater->automaticallyChecksForUpdates = true;
        const bool checked = QTest::qWaitFor([&] { return !found.isEmpty(); }, static_cast<int>(patience.count()));
        EXPECT_FALSE(found.value(0).value(3).toBool()) << "not by hand";
        return checked;
    };
    constexpr auto sure = 20s;
    constexpr auto never = 300ms;
    EXPECT_TRUE(checks(true, before - 90'000, sure));
    EXPECT_GE(store->number(text(lastCheckKey)), static_cast<double>(before));
    QTest::qWait(100);
    EXPECT_EQ(server.requests.size(), 1) << "and not again today";
    EXPECT_FALSE(checks(true, before - 80'000, never));
    EXPECT_TRUE(checks(true, before + 1'000'000, sure)) << "the clock was set back";
    EXPECT_TRUE(checks(true, text("garbage"), sure));
    EXPECT_FALSE(checks(false, 0, never)) << "the user was not asked";

    server.behave = [](QTcpSocket& socket) { socket.abort(); };
    EXPECT_FALSE(checks(true, 0, never));
    EXPECT_EQ(store->number(text(lastCheckKey)), 0) << "a check without an answer was none";
}

TEST(UpdateSchedule, CountsFromTheLastCheck) {
    EXPECT_EQ(untilCheckIsDue(0s, 5'000'000s, 86400), 0s);
    EXPECT_EQ(untilCheckIsDue(4'999'999s, 5'000'000s, 86400), 86399s);
    EXPECT_EQ(untilCheckIsDue(1s, 5'000'000s, 86400), 0s);
    EXPECT_EQ(untilCheckIsDue(5'000'001s, 5'000'000s, 86400), 0s);
    for (const double tooShort : {0.0, -1e300, std::nan("")}) {
        EXPECT_EQ(untilCheckIsDue(4'999'999s, 5'000'000s, tooShort), 3599s);
    }
    EXPECT_GT(untilCheckIsDue(4'999'999s, 5'000'000s, 1e300), 86400s);
}

}  // namespace
}  // namespace sorvik
