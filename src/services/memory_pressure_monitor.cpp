#include "services/memory_pressure_monitor.h"

#include <QLocale>
#include <QTimer>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "platform/byte_count.h"
#include "platform/log.h"
#include "platform/process_memory.h"
#include "services/process_caches.h"

namespace sorvik {
namespace {

constexpr std::chrono::seconds resetDelay{1};

constexpr std::array levelNames{"Normal", "Warning", "Critical"};
static_assert(levelNames.size() == static_cast<std::size_t>(PressureLevel::critical) + 1);

constexpr std::uint64_t lessOrZero(std::uint64_t from, std::uint64_t amount) {
    return from > amount ? from - amount : 0;
}

QString formatted(std::uint64_t bytes) {
    return formatByteCount(
        static_cast<std::int64_t>(std::min<std::uint64_t>(bytes, std::numeric_limits<std::int64_t>::max())));
}

/// "3:04:05 PM"; English, like the lines around it.
QString timeOfDay(const QDateTime& date) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(date.time(), QStringLiteral("h:mm:ss AP"));
}

}  // namespace

QString displayName(PressureLevel level) { return QString::fromLatin1(levelNames.at(static_cast<std::size_t>(level))); }

// Never destroyed: what it watches with must not outlive the event loop by being taken down after it.
MemoryPressureMonitor& MemoryPressureMonitor::shared() {
    static auto& instance = *new MemoryPressureMonitor;
    return instance;
}

MemoryPressureMonitor::MemoryPressureMonitor(Clock clock, SourceMaker makeSource)
    : clock_(std::move(clock)), makeSource_(std::move(makeSource)) {}

void MemoryPressureMonitor::startMonitoring() {
    if (isMonitoring()) {
        return;
    }
    pressureSource_ = makeSource_();
    connect(pressureSource_.get(), &MemoryPressureSource::pressure, this, &MemoryPressureMonitor::dispatch,
            Qt::QueuedConnection);
    logMetrics();
    logLine(QStringLiteral("📊 MemoryPressureMonitor: Started monitoring"));
}

void MemoryPressureMonitor::stopMonitoring() {
    if (!isMonitoring()) {
        return;
    }
    pressureSource_.reset();
    logLine(QStringLiteral("📊 MemoryPressureMonitor: Stopped monitoring"));
}

void MemoryPressureMonitor::addCleanupHandler(QObject& owner, CleanupHandler handler) {
    std::erase_if(cleanupHandlers_, [](const RegisteredHandler& each) { return each.owner.isNull(); });
    cleanupHandlers_.push_back({&owner, std::move(handler)});
}

MemoryStatistics MemoryPressureMonitor::statistics() {
    const std::uint64_t usage = measure();
    const std::uint64_t physical = physicalMemory();
    return {.currentUsage = usage,
            .peakUsage = peakMemoryUsage_,
            .availableMemory = lessOrZero(physical, usage),
            .physicalMemory = physical,
            .pressureLevel = currentPressureLevel_,
            .cleanupCount = cleanupCount_,
            .lastCleanupTime = lastCleanupTime_};
}

void MemoryPressureMonitor::logMetrics() {
    const MemoryStatistics metrics = statistics();
    logLine(QStringLiteral("📊 Memory Metrics:"));
    logLine(QStringLiteral("   Current: ") + formatted(metrics.currentUsage));
    logLine(QStringLiteral("   Peak: ") + formatted(metrics.peakUsage));
    logLine(QStringLiteral("   Available: ") + formatted(metrics.availableMemory));
    logLine(QStringLiteral("   Physical: ") + formatted(metrics.physicalMemory));
    logLine(QStringLiteral("   Pressure: ") + displayName(metrics.pressureLevel));
    logLine(QStringLiteral("   Cleanups: ") + QString::number(metrics.cleanupCount));
    if (metrics.lastCleanupTime) {
        logLine(QStringLiteral("   Last cleanup: ") + timeOfDay(*metrics.lastCleanupTime));
    }
}

std::uint64_t MemoryPressureMonitor::measure() {
    const std::uint64_t usage = residentMemory();
    peakMemoryUsage_ = std::max(peakMemoryUsage_, usage);
    return usage;
}

void MemoryPressureMonitor::dispatch(PressureEvents mask) {
    if (!isMonitoring()) {
        return;  // stopped while the event was on its way
    }
    if (mask.testFlag(PressureEvent::warning)) {
        clean(PressureLevel::warning);
    } else if (mask.testFlag(PressureEvent::critical)) {
        clean(PressureLevel::critical);
    }
}

void MemoryPressureMonitor::clean(PressureLevel level) {
    if (!takesTurn(level == PressureLevel::critical ? lastCriticalCleanup_ : lastWarningCleanup_)) {
        return;
    }
    currentPressureLevel_ = level;
    const std::uint64_t before = measure();
    logLine(QStringLiteral("⚠️ MemoryPressureMonitor: ") + displayName(level) +
            QStringLiteral(" memory pressure detected"));
    logLine(QStringLiteral("   Current memory usage: ") + formatted(before));
    callHandlers(level);
    clearProcessCaches();
    const std::uint64_t freed = lessOrZero(before, measure());
    ++cleanupCount_;
    lastCleanupTime_ = QDateTime::currentDateTime();
    logLine(QStringLiteral("✅ MemoryPressureMonitor: Cleanup completed"));
    logLine(QStringLiteral("   Memory freed: ") + formatted(freed));
    logLine(QStringLiteral("   Total cleanups: ") + QString::number(cleanupCount_));
    logMetrics();
    resetLater(level);
}

bool MemoryPressureMonitor::takesTurn(std::optional<TimePoint>& lastCleanup) const {
    const TimePoint now = clock_();
    if (lastCleanup && now - *lastCleanup < cleanupThrottleInterval) {
        return false;
    }
    lastCleanup = now;
    return true;
}

void MemoryPressureMonitor::callHandlers(PressureLevel level) const {
    const std::vector<RegisteredHandler> handlers = cleanupHandlers_;  // a handler may register another
    for (const RegisteredHandler& each : handlers) {
        if (!each.owner.isNull()) {
            each.handler(level);
        }
    }
}

void MemoryPressureMonitor::resetLater(PressureLevel level) {
    QTimer::singleShot(resetDelay, this, [this, level] {
        if (currentPressureLevel_ == level) {
            currentPressureLevel_ = PressureLevel::normal;
        }
    });
}

}  // namespace sorvik
