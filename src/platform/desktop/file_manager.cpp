#include "platform/desktop/file_manager.h"

#include "platform/desktop/session_bus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>

namespace sorvik {
namespace {

// Milliseconds; the bus may have to start the file manager first.
constexpr int patience = 10'000;

QDBusMessage showItems(const QUrl& file) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString noStartupId;
    call << QStringList{QString::fromLatin1(file.toEncoded())} << noStartupId;
    return call;
}

void openFolderOf(const QUrl& file) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file.toLocalFile()).absolutePath()));
}

}  // namespace

void revealInFileManager(const QUrl& file) {
    withSessionBus(qApp, [file](const QDBusConnection& bus) { revealInFileManager(file, bus); });
}

void revealInFileManager(const QUrl& file, const QDBusConnection& bus) {
    if (!file.isLocalFile()) {
        return;
    }
    if (!bus.isConnected()) {
        return openFolderOf(file);
    }
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(showItems(file), patience), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, file] {
        watcher->deleteLater();
        if (watcher->isError()) {
            openFolderOf(file);
        }
    });
}

}  // namespace sorvik
