#pragma once

#include <QObject>

namespace sorvik {

/// Turns SIGINT, SIGTERM and SIGHUP into a signal of the event loop. The second one ends the process at once. One
/// object a process.
class Interrupt : public QObject {
    Q_OBJECT

public:
    explicit Interrupt(QObject* parent = nullptr);

signals:
    void raised();
};

}  // namespace sorvik
