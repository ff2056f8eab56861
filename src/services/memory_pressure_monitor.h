#pragma once

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/memory_pressure_source.h"

namespace sorvik {

enum class PressureLevel { normal, warning, critical };

/// "Normal", "Warning", "Critical".
[[nodiscard]] QString displayName(PressureLevel level);

/// All sizes in bytes.
struct MemoryStatistics {
    std::uint64_t currentUsage = 0;  ///< of this process
    std::uint64_t peakUsage = 0;     ///< the highest that was measured
    std::uint64_t availableMemory = 0;
    std::uint64_t physicalMemory = 0;
    PressureLevel pressureLevel = PressureLevel::normal;
    int cleanupCount = 0;
    std::optional<QDateTime> lastCleanupTime;
};

/// Gives memory back when the machine is short of it: asks its handlers, empties the process's caches and prints what
/// that freed. Never stops or slows a batch. Main thread only.
class MemoryPressureMonitor : public QObject {
    Q_OBJECT

public:
    /// A storm of events costs one cleanup a level in this time.
    static constexpr std::chrono::milliseconds cleanupThrottleInterval{5000};

    /// Called in a cleanup, so it must return at once and do its work later.
    using CleanupHandler = std::function<void(PressureLevel)>;
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    using SourceMaker = std::function<std::unique_ptr<MemoryPressureSource>()>;

    /// Made on first use, lives as long as the process.
    static MemoryPressureMonitor& shared();

    explicit MemoryPressureMonitor(
        Clock clock = &std::chrono::steady_clock::now,
        SourceMaker makeSource = [] { return std::make_unique<MemoryPressureSource>(); });

    void startMonitoring();
    void stopMonitoring();
    [[nodiscard]] bool isMonitoring() const { return pressureSource_ != nullptr; }

    /// Handlers are called in the order of their registration, each for as long as its owner lives.
    void addCleanupHandler(QObject& owner, CleanupHandler handler);

    /// Measures.
    [[nodiscard]] MemoryStatistics statistics();

    /// Measures and prints.
    void logMetrics();

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    struct RegisteredHandler {
        QPointer<QObject> owner;
        CleanupHandler handler;
    };

    std::uint64_t measure();
    void dispatch(PressureEvents mask);
    void clean(PressureLevel level);
    [[nodiscard]] bool takesTurn(std::optional<TimePoint>& lastCleanup) const;
    void callHandlers(PressureLevel level) const;
    void resetLater(PressureLevel level);

    Clock clock_;
    SourceMaker makeSource_;
    std::unique_ptr<MemoryPressureSource> pressureSource_;  ///< none while not monitoring
    PressureLevel currentPressureLevel_ = PressureLevel::normal;
    std::uint64_t peakMemoryUsage_ = 0;
    std::optional<QDateTime> lastCleanupTime_;
    int cleanupCount_ = 0;
    std::vector<RegisteredHandler> cleanupHandlers_;
    std::optional<TimePoint> lastWarningCleanup_;
    std::optional<TimePoint> lastCriticalCleanup_;
};

}  // namespace sorvik
