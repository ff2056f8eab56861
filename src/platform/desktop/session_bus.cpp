#include "platform/desktop/session_bus.h"

#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <utility>

namespace sorvik {

void withSessionBus(QObject* context, std::function<void(const QDBusConnection&)> use) {
    auto* watcher = new QFutureWatcher<QDBusConnection>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, use = std::move(use)] {
        watcher->deleteLater();
        use(watcher->result());
    });
    auto promise = std::make_shared<QPromise<QDBusConnection>>();
    promise->start();
    watcher->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise] {
        promise->addResult(QDBusConnection::sessionBus());
        promise->finish();
    });
}

}  // namespace sorvik
