#include "support/watched_application.h"

#include <QEvent>
#include <QMetaEnum>
#include <QScopeGuard>
#include <QThread>

#include <ctime>

namespace sorvik {
namespace {

std::chrono::nanoseconds now(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

QString nameOf(const QObject& receiver, QEvent::Type type) {
    return QStringLiteral("%1 to %2")
        .arg(QString::fromLatin1(QMetaEnum::fromType<QEvent::Type>().valueToKey(type)),
             QString::fromLatin1(receiver.metaObject()->className()));
}

}  // namespace

bool WatchedApplication::notify(QObject* receiver, QEvent* event) {
    if (QThread::currentThread() != thread() || depth_ > 0) {
        return QApplication::notify(receiver, event);
    }
    ++depth_;
    const auto down = qScopeGuard([this] { --depth_; });
    const QString name = nameOf(*receiver, event->type());
    const auto wallBefore = now(CLOCK_MONOTONIC);
    const auto busyBefore = now(CLOCK_THREAD_CPUTIME_ID);
    const bool handled = QApplication::notify(receiver, event);
    const auto busy = now(CLOCK_THREAD_CPUTIME_ID) - busyBefore;
    const auto wall = now(CLOCK_MONOTONIC) - wallBefore;
    if (wall > longest_.wall) {
        longest_.wall = wall;
        longest_.wallHandler = name;
    }
    if (busy > longest_.busy) {
        longest_.busy = busy;
        longest_.busyHandler = name;
    }
    return handled;
}

}  // namespace sorvik
