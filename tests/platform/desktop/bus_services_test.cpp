// The portal's appearance and the file manager, over a real bus.

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDesktopServices>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>
#include <functional>

#include "platform/desktop/desktop_appearance.h"
#include "platform/desktop/file_manager.h"
#include "private_bus.h"

namespace sorvik {
namespace {

constexpr auto portalPath = "/org/freedesktop/portal/desktop";

QString text(const char* literal) { return QString::fromUtf8(literal); }

/// Stands at a path of the bus and answers by a function; without one it never answers.
class BusService final : public QDBusVirtualObject {
public:
    using Answer = std::function<QDBusMessage(const QDBusMessage& call)>;

    BusService(const PrivateBus& bus, const char* name, const char* path, Answer answer)
        : bus_(bus.connection()), answer_(std::move(answer)) {
        EXPECT_TRUE(bus_.registerVirtualObject(text(path), this));
        EXPECT_TRUE(bus_.registerService(text(name)));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        calls << call;
        if (answer_) {
            bus.send(answer_(call));
        }
        return true;
    }

    void tell(const char* space, const char* key, const QVariant& value) {
        QDBusMessage signal = QDBusMessage::createSignal(text(portalPath), text("org.freedesktop.portal.Settings"),
                                                         text("SettingChanged"));
        signal << text(space) << text(key) << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }

    void tellScheme(const QVariant& value) { tell("org.freedesktop.appearance", "color-scheme", value); }

    QList<QDBusMessage> calls;

private:
    QDBusConnection bus_;
    Answer answer_;
};

QVariant inVariant(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

BusService portal(const PrivateBus& bus, BusService::Answer answer) {
    return {bus, "org.freedesktop.portal.Desktop", portalPath, std::move(answer)};
}

TEST(DesktopAppearance, FollowsThePortalOfTheSession) {
    const PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    BusService service = portal(bus, [](const QDBusMessage& call) { return call.createReply(inVariant(1U)); });
    DesktopAppearance appearance;
    QSignalSpy changed(&appearance, &DesktopAppearance::changed);
    appearance.start();
    EXPECT_FALSE(appearance.isDark()) << "light until the answer is there";
    ASSERT_TRUE(QTest::qWaitFor([&] { return appearance.isDark(); }, 20000));
    EXPECT_EQ(service.calls.value(0).arguments(),
              (QVariantList{text("org.freedesktop.appearance"), text("color-scheme")}));

    service.tell("org.freedesktop.appearance", "contrast", 0U);
    service.tell("org.other", "color-scheme", 0U);
    service.tellScheme(1U);
    service.tellScheme(2U);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !appearance.isDark(); }, 20000));
    service.tellScheme(inVariant(1U));
    ASSERT_TRUE(QTest::qWaitFor([&] { return appearance.isDark(); }, 20000));
    service.tellScheme(text("purple"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !appearance.isDark(); }, 20000));
    EXPECT_EQ(changed.count(), 4) << "only changes are told";
}

TEST(DesktopAppearance, AsksAnOlderPortalInItsOwnWay) {
    const PrivateBus bus;
    BusService service = portal(bus, [](const QDBusMessage& call) {
        return call.member() == text("Read") ? call.createReply(inVariant(inVariant(1U)))
                                             : call.createErrorReply(QDBusError::UnknownMethod, text("no such method"));
    });
    DesktopAppearance appearance;
    appearance.follow(bus.connection());
    EXPECT_TRUE(QTest::qWaitFor([&] { return appearance.isDark(); }, 20000));
}

TEST(DesktopAppearance, StaysLightWithoutAnAnswer) {
    DesktopAppearance nowhere;
    nowhere.follow(QDBusConnection(text("no bus")));

    const PrivateBus bus;
    DesktopAppearance unserved;
    unserved.follow(bus.connection());

    BusService silent = portal(bus, {});
    DesktopAppearance waiting;
    waiting.follow(bus.connection());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !silent.calls.isEmpty(); }, 20000));
    EXPECT_FALSE(nowhere.isDark() || unserved.isDark() || waiting.isDark());
    silent.tellScheme(1U);
    EXPECT_TRUE(QTest::qWaitFor([&] { return waiting.isDark(); }, 20000)) << "a change is heard all the same";
}

/// Takes the place of the desktop's way to open folders.
class OpenedFolders : public QObject {
    Q_OBJECT

public:
    OpenedFolders() { QDesktopServices::setUrlHandler(text("file"), this, "open"); }
    ~OpenedFolders() override { QDesktopServices::unsetUrlHandler(text("file")); }

    QStringList paths;

public slots:
    void open(const QUrl& url) { paths << url.toLocalFile(); }
};

class FileManagerTest : public testing::Test {
protected:
    const QUrl file = QUrl::fromLocalFile(text("/tmp/it's \"quoted\" #1 100%/größe 写真.png"));
    const QString folder = text("/tmp/it's \"quoted\" #1 100%");
    OpenedFolders opened;
};

TEST_F(FileManagerTest, IsAskedToShowTheFile) {
    const PrivateBus bus;
    BusService manager(bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                       [](const QDBusMessage& call) { return call.createReply(); });
    revealInFileManager(QUrl(text("https://example.org/a.png")), bus.connection());
    revealInFileManager(file, bus.connection());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !manager.calls.isEmpty(); }, 20000));
    const QVariantList arguments = manager.calls.first().arguments();
    EXPECT_EQ(manager.calls.first().member(), text("ShowItems"));
    EXPECT_EQ(arguments.value(0).toStringList().value(0).toStdString(),
              "file:///tmp/it's%20%22quoted%22%20%231%20100%25/gr%C3%B6%C3%9Fe%20%E5%86%99%E7%9C%9F.png");
    EXPECT_EQ(arguments.value(1).typeId(), QMetaType::QString);
    QTest::qWait(100);
    EXPECT_TRUE(opened.paths.isEmpty());
}

TEST_F(FileManagerTest, GivesWayToTheFolder) {
    revealInFileManager(file, QDBusConnection(text("no bus")));
    EXPECT_EQ(opened.paths, QStringList{folder}) << "no bus";

    const PrivateBus bus;
    revealInFileManager(file, bus.connection());
    ASSERT_TRUE(QTest::qWaitFor([&] { return opened.paths.size() == 2; }, 20000)) << "no file manager";
    const BusService refusing(
        bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
        [](const QDBusMessage& call) { return call.createErrorReply(QDBusError::Failed, text("no")); });
    revealInFileManager(file, bus.connection());
    ASSERT_TRUE(QTest::qWaitFor([&] { return opened.paths.size() == 3; }, 20000)) << "one that fails";
    EXPECT_EQ(opened.paths.last(), folder);
}

}  // namespace
}  // namespace sorvik

#include "bus_services_test.moc"
