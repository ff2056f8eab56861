#include "platform/desktop/single_instance.h"

#include "platform/log.h"

#include <QCryptographicHash>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

namespace sorvik {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 2000ms;         // of a second start
constexpr auto visitorsTime = 5000ms;     // to say what they want
constexpr auto pauseBetweenTries = 20ms;  // while another process is just starting or ending
constexpr qsizetype mostVisitors = 16;

// The first one speaks first, so that nothing is said to a process that hangs and would act on it when it wakes up.
constexpr QByteArrayView greeting = "sorvik 1\n";
constexpr QByteArrayView acknowledgement = "taken\n";

/// A user can be logged in at several displays.
QString displayKey() {
    const QByteArray wayland = qgetenv("WAYLAND_DISPLAY");
    const QByteArray display = wayland.isEmpty() ? qgetenv("DISPLAY") : wayland;
    constexpr qsizetype length = 16;
    return QString::fromLatin1(QCryptographicHash::hash(display, QCryptographicHash::Sha256).toHex().left(length));
}

/// The library makes sure that it is the user's own and closed to others.
QString meetingPlace() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return folder.isEmpty() ? QString() : folder + QStringLiteral("/sorvik-") + displayKey();
}

/// Whether the peer says just these words in time.
bool hears(QLocalSocket& socket, QByteArrayView words, const QDeadlineTimer& deadline) {
    while (socket.bytesAvailable() < words.size()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
            return false;
        }
    }
    return socket.read(words.size()) == words;
}

bool say(QLocalSocket& socket, const QByteArray& words, const QDeadlineTimer& deadline) {
    socket.write(words);
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(static_cast<int>(deadline.remainingTime()))) {
            return false;
        }
    }
    return true;
}

void dismiss(QLocalSocket* visitor) {
    visitor->disconnect();
    visitor->abort();
    visitor->deleteLater();
}

}  // namespace

void SingleInstance::Lock::release() {
    if (descriptor_ >= 0) {
        close(std::exchange(descriptor_, -1));
    }
}

SingleInstance::Lock::Result SingleInstance::Lock::take(const QString& path) {
    const int file = open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0) {
        return Result::impossible;
    }
    if (flock(file, LOCK_EX | LOCK_NB) != 0) {
        const bool held = errno == EWOULDBLOCK;
        close(file);
        return held ? Result::held : Result::impossible;
    }
    descriptor_ = file;
    return Result::taken;
}

SingleInstance::SingleInstance(QObject* parent) : QObject(parent), place_(meetingPlace()) {
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::welcomeVisitors);
}

SingleInstance::~SingleInstance() = default;

QByteArray SingleInstance::activationToken() {
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

SingleInstance::Role SingleInstance::start(const InstanceMessage& message) {
    const QDeadlineTimer deadline(patience);
    const std::optional<QByteArray> packed = packMessage(message);
    while (!place_.isEmpty() && !deadline.hasExpired()) {
        const Lock::Result lock = lock_.take(place_ + QStringLiteral(".lock"));
        if (lock != Lock::Result::held) {
            return lock == Lock::Result::taken && listen() ? Role::first : Role::alone;
        }
        if (!packed) {
            return Role::alone;
        }
        if (handOver(*packed, deadline)) {
            return Role::handedOver;
        }
        std::this_thread::sleep_for(pauseBetweenTries);
    }
    return Role::alone;
}

/// With the lock in hand: a socket that stands there belongs to a process that crashed.
bool SingleInstance::listen() {
    const QString socket = place_ + QStringLiteral(".socket");
    QLocalServer::removeServer(socket);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    const bool listening = server_.listen(socket);
    if (!listening) {
        lock_.release();
        logLine(QStringLiteral("Later starts can't reach this one: ") + server_.errorString());
    }
    return listening;
}

bool SingleInstance::handOver(const QByteArray& packed, const QDeadlineTimer& deadline) const {
    QLocalSocket socket;
    socket.connectToServer(place_ + QStringLiteral(".socket"));
    return socket.waitForConnected(static_cast<int>(deadline.remainingTime())) && hears(socket, greeting, deadline) &&
           say(socket, packed, deadline) && hears(socket, acknowledgement, deadline);
}

void SingleInstance::welcomeVisitors() {
    while (QLocalSocket* visitor = server_.nextPendingConnection()) {
        if (server_.findChildren<QLocalSocket*>().size() > mostVisitors) {
            dismiss(visitor);
            continue;
        }
        visitor->setReadBufferSize(messageHeaderSize + messageLimit);
        connect(visitor, &QLocalSocket::disconnected, visitor, &QObject::deleteLater);
        connect(visitor, &QLocalSocket::readyRead, this, [this, visitor] { hear(visitor); });
        QTimer::singleShot(visitorsTime, visitor, [visitor] { dismiss(visitor); });
        visitor->write(greeting.data(), greeting.size());
    }
}

void SingleInstance::hear(QLocalSocket* visitor) {
    if (visitor->bytesAvailable() < messageHeaderSize) {
        return;
    }
    const std::optional<qsizetype> length = messageLength(visitor->peek(messageHeaderSize));
    if (length && visitor->bytesAvailable() < messageHeaderSize + *length) {
        return;
    }
    visitor->skip(messageHeaderSize);
    const std::optional<InstanceMessage> message = length ? unpackMessage(visitor->read(*length)) : std::nullopt;
    if (!message) {
        return dismiss(visitor);
    }
    visitor->write(acknowledgement.data(), acknowledgement.size());
    visitor->flush();
    // One that has given up waiting goes on by itself, with its files.
    const bool stillThere = visitor->state() == QLocalSocket::ConnectedState;
    visitor->disconnectFromServer();
    if (stillThere) {
        emit received(message->urls, message->activationToken);
    }
}

}  // namespace sorvik
