#include "desktop_session.h"

namespace sorvik {
namespace {

constexpr int patience = 60000;  // milliseconds; only a hang takes that long
const auto connectionName = QStringLiteral("notification-daemon");

/// What a server prints when it is ready.
QString firstLine(QProcess& process) {
    while (process.state() != QProcess::NotRunning && !process.canReadLine() && process.waitForReadyRead(patience)) {
    }
    return QString::fromUtf8(process.readLine()).trimmed();
}

}  // namespace

DesktopSession::DesktopSession() {
    xServer_.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
                    QStringLiteral("1280x800x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    bus_.start(QStringLiteral("dbus-daemon"),
               {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    display_ = u':' + firstLine(xServer_);
    busAddress_ = firstLine(bus_);
    QDBusConnection connection = QDBusConnection::connectToBus(busAddress_, connectionName);
    EXPECT_TRUE(connection.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &daemon_,
                                          QDBusConnection::ExportAllSlots));
    EXPECT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.Notifications")));
    EXPECT_TRUE(QDir(folder_.path()).mkpath(QStringLiteral("home/sorvik")));
    QFile settings(path(QStringLiteral("home/sorvik/sorvik.ini")));
    EXPECT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write("[General]\nhasShownUpdatePreferencesDialog=true\n");
    QFile::setPermissions(path(QStringLiteral("home")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

DesktopSession::~DesktopSession() {
    QDBusConnection::disconnectFromBus(connectionName);
    for (QProcess* server : {&bus_, &xServer_}) {
        server->terminate();
        server->waitForFinished(patience);
    }
}

QProcessEnvironment DesktopSession::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), display_);
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress_);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    for (const auto* name : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        environment.insert(QString::fromLatin1(name), path(QStringLiteral("home")));
    }
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    return environment;
}

std::unique_ptr<QProcess> DesktopSession::start(const QStringList& files) const {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment());
    process->setProcessChannelMode(QProcess::MergedChannels);
    process->start(QStringLiteral(SORVIK), files);
    return process;
}

void DesktopSession::tool(const QStringList& arguments) const {
    QProcess tool;
    tool.setProcessEnvironment(environment());
    tool.start(QStringLiteral("xdotool"), arguments);
    EXPECT_TRUE(tool.waitForFinished(patience));
    EXPECT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();
}

void DesktopSession::waitForWindow(const QString& title) const {
    tool({QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
          title});
}

void DesktopSession::press(const QString& key) const {
    tool({QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
          QStringLiteral("^Sorvik$"), QStringLiteral("windowfocus"), QStringLiteral("--sync")});
    tool({QStringLiteral("key"), key});
}

}  // namespace sorvik
