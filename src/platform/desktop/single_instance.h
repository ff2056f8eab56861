#pragma once

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QObject>
#include <QString>

#include "platform/desktop/instance_message.h"

class QLocalSocket;

namespace sorvik {

/// One running program a user and display: a second start hands its files to the first and ends. They meet at a socket
/// in the user's runtime folder that nobody else can open.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Role {
        first,       ///< later starts reach this process, by received()
        handedOver,  ///< another process has taken the message: this one is to end
        alone,       ///< there is a first one that does not answer, or no place to meet: go on without
    };

    explicit SingleInstance(QObject* parent = nullptr);

    /// Lets go of the role: the next start is a first one.
    ~SingleInstance() override;

    /// Called once, before there are windows. Blocks for as long as the first one takes to answer, at most two seconds.
    [[nodiscard]] Role start(const InstanceMessage& message);

    /// What the desktop gave this process for its window. To be read before the QGuiApplication, which consumes it.
    [[nodiscard]] static QByteArray activationToken();

signals:
    /// A second start; without URLs the user only wants to see the window.
    void received(const QList<QUrl>& urls, const QByteArray& activationToken);

private:
    /// Held as long as the object lives; the system lets go of it when the process ends in whatever way.
    class Lock {
    public:
        enum class Result { taken, held, impossible };
        Lock() = default;
        ~Lock() { release(); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        [[nodiscard]] Result take(const QString& path);
        void release();

    private:
        int descriptor_ = -1;
    };

    [[nodiscard]] bool listen();
    [[nodiscard]] bool handOver(const QByteArray& packed, const QDeadlineTimer& deadline) const;
    void welcomeVisitors();
    void hear(QLocalSocket* visitor);

    QString place_;  ///< path without its ending; empty when the user has no runtime folder
    Lock lock_;
    QLocalServer server_;  ///< behind the lock: its socket is gone before the lock is
};

}  // namespace sorvik
