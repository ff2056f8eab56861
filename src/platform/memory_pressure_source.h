#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QFlags>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/replacement_file.h"

namespace sorvik {

enum class PressureEvent : unsigned { warning = 1, critical = 2 };
Q_DECLARE_FLAGS(PressureEvents, PressureEvent)
Q_DECLARE_OPERATORS_FOR_FLAGS(PressureEvents)

/// Microseconds since the start of the machine in which some task, or all of them at once, waited for memory.
struct StallTotals {
    std::uint64_t some = 0;
    std::uint64_t full = 0;
};

/// Reads the kernel's pressure file; absent when it is none.
[[nodiscard]] std::optional<StallTotals> parseStallTotals(const QByteArray& text);

/// Warning when some task waited for a tenth of the time that passed, critical when all did.
[[nodiscard]] PressureEvents pressureBetween(const StallTotals& before, const StallTotals& after,
                                             std::chrono::microseconds elapsed);

/// Tells while the machine is short of memory, by the kernel's pressure stall information. Lives on an event loop's
/// thread, which it never blocks. A machine without that information never tells anything.
class MemoryPressureSource : public QObject {
    Q_OBJECT

public:
    static constexpr const char* kernelFile = "/proc/pressure/memory";
    static constexpr std::chrono::seconds window{2};  ///< users without privileges may ask for multiples of it only

    enum class Watch { none, triggers, polling };

    /// Watches at once. A file that is not the kernel's own is polled, as is one whose triggers are refused.
    explicit MemoryPressureSource(const QString& path = QString::fromLatin1(kernelFile),
                                  std::chrono::milliseconds pollInterval = window, QObject* parent = nullptr);

    [[nodiscard]] Watch watch() const;

signals:
    /// At most once a window for each event while its threshold is passed. Each event comes alone, so that
    /// neither hides the other.
    void pressure(PressureEvents mask);

private:
    struct Trigger {
        Descriptor file;
        std::unique_ptr<QSocketNotifier> notifier;  // gone before its file is
    };

    [[nodiscard]] bool addTriggers();
    void triggered(PressureEvent event, int file);
    void startPolling(std::chrono::milliseconds interval);
    void poll();

    QByteArray path_;
    std::vector<Trigger> triggers_;
    QTimer timer_;
    QElapsedTimer sinceReading_;
    StallTotals reading_;
};

}  // namespace sorvik
