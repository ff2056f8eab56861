#include "services/performance_instrumentation.h"

#include "platform/log.h"

#include <QCoreApplication>
#include <QStringList>
#include <QThread>

#include <gtest/gtest.h>
#include <thread>

namespace sorvik {
namespace {

class Instrumentation : public testing::Test {
protected:
    void SetUp() override {
        setLogSink([this](const QString& line) {
            lines_ << line;
            thread_ = std::this_thread::get_id();
        });
    }
    void TearDown() override { setLogSink({}); }

    PerformanceInstrumentation instrumentation_;
    QStringList lines_;
    std::thread::id thread_;
};

const QString name = QStringLiteral("batch_conversion");

TEST_F(Instrumentation, PrintsEachSampleWithItsOwnCategoryAndEntries) {
    instrumentation_.record(name, Category::batchProcessing, {{QStringLiteral("file_count"), QStringLiteral("12")}},
                            1.23456);
    instrumentation_.record(name, Category::fileIO, {}, 0.0125);
    instrumentation_.record(name, Category::caching,
                            {{QStringLiteral("b"), QStringLiteral("%1")}, {QStringLiteral("a"), QString()}}, 1.0);
    instrumentation_.record(name, Category::validation, {}, 1.001);
    const QStringList expected{
        QStringLiteral("⏱️ [Batch Processing] batch_conversion: 1234.56ms [file_count=12]"),
        QStringLiteral("⚠️ Slow operation detected: batch_conversion took 1234.56ms"),
        QStringLiteral("⏱️ [File I/O] batch_conversion: 12.50ms"),
        QStringLiteral("⏱️ [Caching] batch_conversion: 1000.00ms [a=, b=%1]"),
        QStringLiteral("⏱️ [Validation] batch_conversion: 1001.00ms"),
        QStringLiteral("⚠️ Slow operation detected: batch_conversion took 1001.00ms"),
    };
    EXPECT_EQ(lines_, expected);
    EXPECT_EQ(instrumentation_.metrics(name)->category, Category::batchProcessing);
}

TEST_F(Instrumentation, KeepsTheNewestHundredSamples) {
    EXPECT_FALSE(instrumentation_.metrics(name));
    instrumentation_.record(name, Category::caching, {}, 0.5);
    EXPECT_EQ(instrumentation_.metrics(name)->minTime, 0.5);
    EXPECT_EQ(instrumentation_.metrics(name)->maxTime, 0.5);
    for (int i = 1; i <= 100; ++i) {
        instrumentation_.record(name, Category::caching, {}, i / 1024.0);
    }
    const OperationMetrics metrics = instrumentation_.metrics(name).value();
    EXPECT_EQ(metrics.count, 101);
    EXPECT_EQ(metrics.recentDurations.size(), 100U);
    EXPECT_EQ(metrics.recentDurations.front(), 1 / 1024.0);
    EXPECT_EQ(metrics.recentDurations.back(), 100 / 1024.0);
    EXPECT_EQ(metrics.totalTime, 0.5 + 5050 / 1024.0);
    EXPECT_EQ(metrics.minTime, 1 / 1024.0);
    EXPECT_EQ(metrics.maxTime, 0.5);
}

TEST_F(Instrumentation, RecordsOnTheEventLoopsThreadWithTheTimeOfTheCall) {
    std::thread([this] {
        OperationTracker dropped(QStringLiteral("dropped"), Category::caching, instrumentation_);
        OperationTracker tracker(name, Category::imageConversion, instrumentation_);
        tracker.metadata.insert(QStringLiteral("raw_format"), QStringLiteral("dng"));
        tracker.complete();
        tracker.complete();
    }).join();
    EXPECT_TRUE(lines_.isEmpty());
    QThread::msleep(300);
    QCoreApplication::processEvents();
    EXPECT_EQ(thread_, std::this_thread::get_id());
    ASSERT_EQ(lines_.size(), 1);
    EXPECT_TRUE(lines_.front().endsWith(QStringLiteral(" [raw_format=dng]")));
    EXPECT_LT(instrumentation_.metrics(name)->maxTime, 0.3);
}

}  // namespace
}  // namespace sorvik
