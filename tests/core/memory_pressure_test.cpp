// What the view model does when the machine is short of memory.

#include <QCoreApplication>
#include <QStringList>

#include "list_fixture.h"

namespace sorvik {
namespace {

class MemoryPressure : public testing::Test {
protected:
    MemoryPressure() {
        setLogSink([this](const QString& line) { lines << line; });
    }
    ~MemoryPressure() override { setLogSink({}); }

    void tell(PressureEvent event) {
        emit source->pressure(event);
        QTest::qWait(0);
    }

    [[nodiscard]] QStringList responses() const { return lines.filter(QStringLiteral("Responding to")); }

    QStringList lines;
    FakeEngine engine;
    MemoryPressureSource* source = nullptr;
    MemoryPressureMonitor monitor{&std::chrono::steady_clock::now, [this] {
                                      auto made = std::make_unique<MemoryPressureSource>(QStringLiteral("/nowhere"));
                                      source = made.get();
                                      return made;
                                  }};
};

TEST_F(MemoryPressure, MakesTheModelLetGoOfWhatItCan) {
    FileProcessingViewModel model(engine, nullptr, monitor);
    ASSERT_NE(source, nullptr) << "monitoring begins with the model";
    model.batchCompletionMessage = QStringLiteral("done");
    tell(PressureEvent::warning);
    EXPECT_EQ(responses(),
              QStringList(QStringLiteral("📊 FileProcessingViewModel: Responding to Warning memory pressure")));
    EXPECT_EQ(engine.resultCacheCleared, 1);
    EXPECT_EQ(engine.signatureCacheCleared, 1);
    EXPECT_TRUE(model.batchCompletionMessage.value());
    EXPECT_FALSE(lines.contains(QStringLiteral("   Cleared caches and temporary data")));
    tell(PressureEvent::critical);
    EXPECT_EQ(engine.resultCacheCleared, 2);
    EXPECT_FALSE(model.batchCompletionMessage.value());
    EXPECT_EQ(lines.mid(lines.size() - 2),
              QStringList({QStringLiteral("📊 FileProcessingViewModel: Responding to Critical memory pressure"),
                           QStringLiteral("   Cleared caches and temporary data")}));
}

TEST_F(MemoryPressure, FindsModelsThatAreGoneSilent) {
    auto model = std::make_unique<FileProcessingViewModel>(engine, nullptr, monitor);
    monitor.addCleanupHandler(monitor, [&](PressureLevel) { model.reset(); });  // while its own task is on its way
    tell(PressureEvent::warning);
    tell(PressureEvent::critical);
    EXPECT_EQ(monitor.statistics().cleanupCount, 2);
    EXPECT_EQ(responses(), QStringList());
    EXPECT_EQ(engine.resultCacheCleared, 0);
}

TEST_F(MemoryPressure, IsReportedWhenABatchBeginsAndEnds) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.jpg")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    FileProcessingViewModel model(engine, nullptr, monitor);
    QSignalSpy inserted(&model, &FileProcessingViewModel::filesInserted);
    QSignalSpy ended(&model, &FileProcessingViewModel::batchEnded);
    model.handleDrop({QUrl::fromLocalFile(file.fileName())});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !inserted.isEmpty(); }, 20000));
    model.startConversion(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !ended.isEmpty(); }, 20000));
    const QString report = QStringLiteral("📊 Memory Metrics:");
    const auto after = [&](const QString& line) { return lines.value(lines.indexOf(line) + 1); };
    EXPECT_EQ(after(QStringLiteral("\n📊 Starting conversion batch")), report);
    EXPECT_EQ(after(QStringLiteral("\n📊 Conversion batch complete")), report);
}

}  // namespace
}  // namespace sorvik
