#pragma once

#include <QApplication>
#include <QString>

#include <chrono>

namespace sorvik {

/// Measures how long single handlers keep the main thread. Nested ones belong to the outermost, but for those of a loop
/// inside a test, which is no handler.
class WatchedApplication final : public QApplication {
public:
    struct Longest {
        std::chrono::nanoseconds wall{};
        std::chrono::nanoseconds busy{};  ///< processor time of the thread: independent of the machine's other load
        QString wallHandler;              ///< "QTimerEvent to ContentView"
        QString busyHandler;
    };

    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    void forget() { longest_ = {}; }
    [[nodiscard]] const Longest& longest() const { return longest_; }

private:
    int depth_ = 0;
    Longest longest_;
};

}  // namespace sorvik
