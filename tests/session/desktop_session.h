#pragma once

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QVariantMap>

#include <memory>
#include <vector>

namespace sorvik {

/// A notification daemon that writes down what it is asked to show.
class NotificationDaemon final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown {
        QString application;
        uint replaces = 0;
        QString title;
        QString body;
    };
    std::vector<Shown> shown;

public slots:
    QStringList GetCapabilities() { return {QStringLiteral("body"), QStringLiteral("actions")}; }

    uint Notify(const QString& application, uint replaces, const QString& /*icon*/, const QString& title,
                const QString& body, const QStringList& /*actions*/, const QVariantMap& /*hints*/, int /*timeout*/) {
        shown.push_back({application, replaces, title, body});
        return replaces != 0 ? replaces : ++last_;
    }

private:
    uint last_ = 40;
};

/// An X server and a session bus for one test, both ended with it.
class DesktopSession {
public:
    DesktopSession();
    ~DesktopSession();

    [[nodiscard]] NotificationDaemon& notifications() { return daemon_; }

    /// Starts the program in the session.
    [[nodiscard]] std::unique_ptr<QProcess> start(const QStringList& files) const;

    /// Presses a key in the program's window, once it is there.
    void press(const QString& key) const;

    /// Until a window with a title that matches is seen.
    void waitForWindow(const QString& title) const;

    [[nodiscard]] QString path(const QString& name) const { return folder_.filePath(name); }

private:
    [[nodiscard]] QProcessEnvironment environment() const;
    void tool(const QStringList& arguments) const;

    QTemporaryDir folder_;
    QProcess xServer_;
    QProcess bus_;
    QString display_;
    QString busAddress_;
    NotificationDaemon daemon_;
};

}  // namespace sorvik
