#pragma once

#include <QDBusConnection>

#include <functional>

class QObject;

namespace sorvik {

/// Connects to the user's session bus without blocking the caller, then calls `use` once from the event loop of
/// `context`, which lives in the calling thread; never after the context is gone. Without a bus the connection that it
/// gets is not connected.
void withSessionBus(QObject* context, std::function<void(const QDBusConnection& bus)> use);

}  // namespace sorvik
