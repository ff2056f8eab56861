#pragma once

#include <QUrl>

class QDBusConnection;

namespace sorvik {

/// Shows a local file, selected, in the desktop's file manager. Where there is none that can be asked, the folder is
/// opened. Returns at once and reports nothing. Main thread, with a QGuiApplication.
void revealInFileManager(const QUrl& file);

/// By way of this bus, connected or not.
void revealInFileManager(const QUrl& file, const QDBusConnection& bus);

}  // namespace sorvik
