#include "platform/memory_pressure_source.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <memory>

#include "platform/process_memory.h"

namespace sorvik {
namespace {

using namespace std::chrono_literals;

QByteArray kernelText(std::uint64_t some, std::uint64_t full) {
    return "some avg10=0.00 avg60=1.25 avg300=0.40 total=" + QByteArray::number(qulonglong{some}) +
           "\nfull avg10=0.00 avg60=0.00 avg300=0.00 total=" + QByteArray::number(qulonglong{full}) + "\n";
}

TEST(StallTotals, AreReadFromBothLinesOrNotAtAll) {
    const auto totals = parseStallTotals(kernelText(18446744073709551615U, 7));
    ASSERT_TRUE(totals);
    EXPECT_EQ(totals->some, 18446744073709551615U);
    EXPECT_EQ(totals->full, 7U);
    for (const char* text : {"", "some", "full avg10=0.00 total=1\n", "some total=1\nfull total=\n",
                             "some total=-1\nfull total=0\n", "some total=18446744073709551616\nfull total=0\n"}) {
        EXPECT_FALSE(parseStallTotals(text)) << text;
    }
}

TEST(StallTotals, TellPressureFromATenthOfTheTime) {
    const StallTotals before{.some = 1000, .full = 500};
    const auto events = [&](std::uint64_t some, std::uint64_t full, std::chrono::microseconds elapsed) {
        return pressureBetween(before, {.some = some, .full = full}, elapsed);
    };
    EXPECT_EQ(events(200'999, 500, 2s), PressureEvents());
    EXPECT_EQ(events(201'000, 200'499, 2s), PressureEvents(PressureEvent::warning));
    EXPECT_EQ(events(900'000, 200'500, 2s), PressureEvent::warning | PressureEvent::critical);
    EXPECT_EQ(events(1000, 500, 0s), PressureEvents());
    EXPECT_EQ(events(0, 0, 2s), PressureEvents()) << "counters that ran backward";
}

class WatchedFile : public testing::Test {
protected:
    [[nodiscard]] QString path() const { return folder_.filePath(QStringLiteral("memory")); }

    void write(const QByteArray& text) const {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    void watch() {
        source = std::make_unique<MemoryPressureSource>(path(), 10ms);
        QObject::connect(source.get(), &MemoryPressureSource::pressure, source.get(),
                         [this](PressureEvents mask) { masks << mask; });
    }

    void waitForEvents(qsizetype count) const {
        QElapsedTimer timer;
        timer.start();
        while (masks.size() < count && timer.elapsed() < 20000) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    QTemporaryDir folder_;
    std::unique_ptr<MemoryPressureSource> source;
    QList<PressureEvents> masks;
};

TEST_F(WatchedFile, IsPolledAndLeftAsItIs) {
    const QByteArray quiet = kernelText(0, 0);
    write(quiet);
    watch();
    EXPECT_EQ(source->watch(), MemoryPressureSource::Watch::polling);
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), quiet);
    constexpr std::uint64_t hour = 3'600'000'000;  // more than a tenth of whatever passes here
    write(kernelText(hour, 0));
    waitForEvents(1);
    write("rubbish");
    write(kernelText(2 * hour, hour));
    waitForEvents(3);
    const QList<PressureEvents> expected{PressureEvent::warning, PressureEvent::warning, PressureEvent::critical};
    EXPECT_EQ(masks, expected);
}

TEST_F(WatchedFile, MayBeMissingOrNoFileOfTheKind) {
    watch();
    EXPECT_EQ(source->watch(), MemoryPressureSource::Watch::none);
    write("Operation not supported");
    watch();
    EXPECT_EQ(source->watch(), MemoryPressureSource::Watch::none);
    source = std::make_unique<MemoryPressureSource>(folder_.path());
    EXPECT_EQ(source->watch(), MemoryPressureSource::Watch::none);
}

TEST(KernelsPressureFile, IsWatchedWhereThereIsOne) {
    const MemoryPressureSource source;
    const bool exists = QFile::exists(QString::fromLatin1(MemoryPressureSource::kernelFile));
    EXPECT_EQ(source.watch() != MemoryPressureSource::Watch::none, exists);
}

TEST(ProcessMemory, FollowsWhatIsTouched) {
    constexpr std::size_t size = 64 << 20;
    const std::uint64_t before = residentMemory();
    ASSERT_GT(before, 0U);
    // Not from the heap, which may keep what it gets back.
    void* block = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    ASSERT_NE(block, MAP_FAILED);
    EXPECT_GE(residentMemory(), before + size / 2);
    munmap(block, size);
    EXPECT_LT(residentMemory(), before + size / 2);
    EXPECT_GT(physicalMemory(), residentMemory());
}

}  // namespace
}  // namespace sorvik
