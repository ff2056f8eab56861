#include "services/memory_pressure_monitor.h"

#include "platform/log.h"
#include "services/process_caches.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QStringList>
#include <QTimer>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <utility>

namespace sorvik {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t blockSize = 64 << 20;

/// Not from the heap, which may keep what it gets back.
void* mapBlock() {
    return mmap(nullptr, blockSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
}

class Monitor : public testing::Test {
protected:
    Monitor() {
        setLogSink([this](const QString& line) { lines << line; });
    }
    ~Monitor() override { setLogSink({}); }

    /// An event as the system tells it.
    void tell(PressureEvents mask) {
        emit source->pressure(mask);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] int cleanups() { return monitor.statistics().cleanupCount; }
    [[nodiscard]] PressureLevel level() { return monitor.statistics().pressureLevel; }

    [[nodiscard]] QString freed() const {
        const QString label = QStringLiteral("   Memory freed: ");
        return lines.filter(label).value(0).mid(label.size());
    }

    QStringList lines;
    std::chrono::steady_clock::time_point now{};
    int sources = 0;
    MemoryPressureSource* source = nullptr;
    MemoryPressureMonitor monitor{[this] { return now; },
                                  [this] {
                                      ++sources;
                                      auto made = std::make_unique<MemoryPressureSource>(QStringLiteral("/nowhere"));
                                      source = made.get();
                                      return made;
                                  }};
};

TEST_F(Monitor, CleansOncePerLevelInFiveSeconds) {
    monitor.startMonitoring();
    tell(PressureEvent::warning);
    now += 4900ms;
    tell(PressureEvent::warning);
    EXPECT_EQ(cleanups(), 1);
    tell(PressureEvent::critical);
    EXPECT_EQ(cleanups(), 2);
    now += 100ms;
    tell(PressureEvent::critical | PressureEvent::warning);
    EXPECT_EQ(cleanups(), 3);
    EXPECT_EQ(level(), PressureLevel::warning) << "a mask with both counts as warning";
    tell({});
    EXPECT_EQ(cleanups(), 3);
}

TEST_F(Monitor, AsksItsHandlersInOrderForAsLongAsTheirOwnersLive) {
    QStringList calls;
    QObject lasting;
    auto passing = std::make_unique<QObject>();
    for (QObject* owner : {&lasting, passing.get(), &lasting}) {
        monitor.addCleanupHandler(*owner, [&, owner](PressureLevel pressure) {
            calls << (owner == &lasting ? QStringLiteral("lasting ") : QStringLiteral("passing ")) +
                         displayName(pressure);
        });
    }
    monitor.startMonitoring();
    tell(PressureEvent::warning);
    passing.reset();
    tell(PressureEvent::critical);
    const QStringList expected{QStringLiteral("lasting Warning"), QStringLiteral("passing Warning"),
                               QStringLiteral("lasting Warning"), QStringLiteral("lasting Critical"),
                               QStringLiteral("lasting Critical")};
    EXPECT_EQ(calls, expected);
}

TEST_F(Monitor, EmptiesTheCachesWithoutAnyHandlerAndTellsWhatThatFreed) {
    static void* const cache = mapBlock();
    ASSERT_NE(cache, MAP_FAILED);
    registerProcessCache([] { munmap(cache, blockSize); });
    monitor.startMonitoring();
    lines.clear();
    tell(PressureEvent::critical);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^6[0-9](\\.\\d)? MB$")).match(freed()).hasMatch())
        << freed().toStdString();
    const QStringList patterns{
        QStringLiteral("⚠️ MemoryPressureMonitor: Critical memory pressure detected"),
        QStringLiteral("   Current memory usage: [\\d.]+ MB"),
        QStringLiteral("✅ MemoryPressureMonitor: Cleanup completed"),
        QStringLiteral("   Memory freed: [\\d.]+ MB"),
        QStringLiteral("   Total cleanups: 1"),
        QStringLiteral("📊 Memory Metrics:"),
        QStringLiteral("   Current: [\\d.]+ MB"),
        QStringLiteral("   Peak: [\\d.]+ MB"),
        QStringLiteral("   Available: [\\d.]+ GB"),
        QStringLiteral("   Physical: [\\d.]+ GB"),
        QStringLiteral("   Pressure: Critical"),
        QStringLiteral("   Cleanups: 1"),
        QStringLiteral("   Last cleanup: 1?\\d:[0-5]\\d:[0-5]\\d [AP]M"),
    };
    const QString expected = QStringLiteral("^") + patterns.join(QLatin1Char('\n')) + QStringLiteral("$");
    const QString printed = lines.join(QLatin1Char('\n'));
    EXPECT_TRUE(QRegularExpression(expected).match(printed).hasMatch()) << printed.toStdString();
    const MemoryStatistics statistics = monitor.statistics();
    EXPECT_GE(statistics.peakUsage, statistics.currentUsage + blockSize / 2);
    EXPECT_EQ(statistics.availableMemory + statistics.currentUsage, statistics.physicalMemory);
}

TEST_F(Monitor, ReportsGrowthAsZero) {
    void* grown = MAP_FAILED;
    monitor.addCleanupHandler(monitor, [&](PressureLevel) { grown = mapBlock(); });
    monitor.startMonitoring();
    tell(PressureEvent::warning);
    ASSERT_NE(grown, MAP_FAILED);
    EXPECT_EQ(freed(), QStringLiteral("0 bytes"));
    munmap(grown, blockSize);
}

TEST_F(Monitor, GoesBackToNormalUnlessAnotherLevelHasTakenOver) {
    monitor.startMonitoring();
    tell(PressureEvent::warning);
    // Timers end in the order of their times, so that a slow machine changes nothing.
    PressureLevel afterWarningsReset = PressureLevel::normal;
    QTimer::singleShot(1050ms, Qt::PreciseTimer, &monitor, [&] { afterWarningsReset = level(); });
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 200) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    tell(PressureEvent::critical);
    while (level() != PressureLevel::normal && timer.elapsed() < 20000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_EQ(afterWarningsReset, PressureLevel::critical);
    EXPECT_EQ(level(), PressureLevel::normal);
}

TEST_F(Monitor, StartsAndStopsOnce) {
    monitor.stopMonitoring();
    EXPECT_TRUE(lines.isEmpty());
    monitor.startMonitoring();
    monitor.startMonitoring();
    EXPECT_EQ(sources, 1);
    emit source->pressure(PressureEvent::warning);
    monitor.stopMonitoring();
    QCoreApplication::processEvents();
    EXPECT_EQ(cleanups(), 0) << "an event on its way when monitoring stopped";
    EXPECT_EQ(lines.filter(QStringLiteral("MemoryPressureMonitor")),
              QStringList({QStringLiteral("📊 MemoryPressureMonitor: Started monitoring"),
                           QStringLiteral("📊 MemoryPressureMonitor: Stopped monitoring")}));
    EXPECT_TRUE(lines.filter(QStringLiteral("Last cleanup")).isEmpty());
}

}  // namespace
}  // namespace sorvik
