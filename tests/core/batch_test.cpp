// The conversion batch: order, counts, progress and what happens to rows in the middle of it. Files are
// real, the engine is not.

#include <QSemaphore>

#include "core/conversion_batch.h"
#include "list_fixture.h"

namespace sorvik {
namespace {

using Batch = ListTest<FakeEngine>;

QString text(const char* literal) { return QString::fromUtf8(literal); }

QString numbered(int number) { return QStringLiteral("f%1.jpg").arg(number, 5, 10, QLatin1Char('0')); }

TEST(MaxConcurrentOperations, FollowsTheProcessors) {
    const auto most = &FileProcessingViewModel::maxConcurrentOperations;
    EXPECT_EQ(most(1), 2);
    EXPECT_EQ(most(3), 2);
    EXPECT_EQ(most(4), 3);
    EXPECT_EQ(most(8), 6);
    EXPECT_EQ(most(11), 8);
    EXPECT_EQ(most(128), 8);
}

TEST(ConversionSummary, TakesTheFirstThatFits) {
    EXPECT_EQ(conversionSummary(1, 1, true), text("Processing cancelled."));
    EXPECT_EQ(conversionSummary(3, 2, false),
              text("Conversion complete. 3 succeeded, 2 failed. Check status column for details."));
    EXPECT_EQ(conversionSummary(3, 0, false), text("Conversion complete. 3 file(s) succeeded."));
    EXPECT_EQ(conversionSummary(0, 0, false), std::nullopt);
}

TEST_F(Batch, BringsEachOutputBesideItsSource) {
    settings.outputPrefix = text("new-");
    drop({write(text("a.jpg")), write(text("b.eps"))});
    runToEnd();
    EXPECT_EQ(read(text("new-a.png")), "converted 1 a.jpg");
    EXPECT_EQ(read(text("new-b.png")), "from EPS");
    EXPECT_TRUE(row(0).isProcessed);
    EXPECT_EQ(row(0).conversionStatus, ConversionStatus::done);
    EXPECT_EQ(row(0).convertedSize, 17);
    EXPECT_EQ(row(0).outputSize, 17);
    EXPECT_FALSE(row(0).wasCompressed);
    EXPECT_EQ(summary(), text("Conversion complete. 2 file(s) succeeded."));
    EXPECT_EQ(model.processingProgress.value(), 1.0);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 4) << "nothing else is left";

    // Processed rows are not taken again, and a batch of none says nothing.
    model.batchCompletionMessage = std::nullopt;
    runToEnd();
    EXPECT_EQ(engine.conversions, 1);
    EXPECT_EQ(summary(), QString());
}

TEST_F(Batch, CountsFailuresAndEndsOnlyTheirRows) {
    engine.onConvert = [](const QString& name) {
        if (name == text("bad.jpg")) {
            throw ConversionError(text("No space left on device"));
        }
        if (name == text("worse.jpg")) {
            throw std::bad_alloc();
        }
    };
    drop({write(text("good.jpg")), write(text("bad.jpg")), write(text("worse.jpg")), write(text("notes.txt")),
          path(text("gone.jpg")), write(text("invalid.jpg"))});
    runToEnd();
    EXPECT_TRUE(row(0).isProcessed);
    EXPECT_EQ(error(1), text("Processing failed: Not enough disk space to complete the conversion."));
    EXPECT_EQ(row(1).conversionStatus, ConversionStatus::waiting);
    EXPECT_EQ(error(2),
              text("Processing failed: Not enough memory to process this file. Try closing other applications."));
    EXPECT_EQ(error(3), text("Skipped: Invalid input format"));
    EXPECT_EQ(error(4), text("Processing failed: The file could not be found. It may have been moved or deleted."));
    EXPECT_EQ(error(5), text("Processing failed: The conversion failed. Please ensure the file is not corrupted and "
                             "try again."));
    EXPECT_EQ(summary(), text("Conversion complete. 1 succeeded, 5 failed. Check status column for details."));

    // Failed rows run again with the next batch.
    engine.onConvert = {};
    runToEnd();
    EXPECT_TRUE(row(1).isProcessed);
    EXPECT_EQ(error(1), QString());
}

TEST_F(Batch, ReportsEveryFifthFileAndTheLast) {
    QStringList files;
    for (int number = 0; number < 12; ++number) {
        files << write(numbered(number));
    }
    drop(files);
    std::vector<double> reported;
    const auto observer = model.processingProgress.addNotifier([&] { reported.push_back(model.processingProgress); });
    runToEnd();
    for (const double expected : {5.0 / 12, 10.0 / 12, 1.0}) {
        EXPECT_NE(std::ranges::find(reported, expected), reported.end()) << expected;
    }
    EXPECT_LE(reported.size(), 6) << "throttled";
    EXPECT_EQ(engine.resultCacheCleared, 2) << "at ten files and at the end";
}

TEST_F(Batch, KeepsToItsPermitsWithTenThousandRows) {
    const QString one = write(text("one.jpg"));
    QStringList files;
    for (int number = 0; number < 10000; ++number) {
        files << path(numbered(number));  // none exists: rows end as fast as they can
    }
    files << one << one;
    drop(files);
    ASSERT_EQ(model.files().size(), 10002);
    runToEnd();
    EXPECT_EQ(summary(), text("Conversion complete. 2 succeeded, 10000 failed. Check status column for details."));
    EXPECT_LE(engine.mostAtOnce.load(), FileProcessingViewModel::maxConcurrentOperations(QThread::idealThreadCount()));
}

TEST_F(Batch, FinishesEqualOutputsOneAfterTheOther) {
    QStringList files;
    for (int round = 0; round < 10; ++round) {
        files << write(text("a.jpg")) << write(text("a.gif")) << write(text("a.webp"));
    }
    QFile::link(folder.path(), path(text("link")));
    files << path(text("link/a.jpg"));
    drop(files);
    for (qsizetype index = 0; index < std::ssize(model.files()); ++index) {
        model.setOutputFormat(index, ImageFormat::tiff);
    }
    runToEnd();
    EXPECT_EQ(summary(), text("Conversion complete. 31 file(s) succeeded."));
    EXPECT_EQ(engine.mostFinishingOnePath, 1);
    EXPECT_TRUE(read(text("a.tiff")).startsWith("converted 1 a."));
}

TEST_F(Batch, StopsWithoutTouchingRowsWhoseTurnHasNotCome) {
    QSemaphore started;
    QSemaphore mayEnd;
    engine.onConvert = [&](const QString&) {
        started.release();
        mayEnd.acquire();
    };
    QStringList files;
    for (int number = 0; number < 200; ++number) {
        files << write(numbered(number));
    }
    drop(files);
    QSignalSpy ended(&model, &FileProcessingViewModel::batchEnded);
    model.startConversion(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return started.tryAcquire(); }, 5000));
    model.cancel();
    mayEnd.release(200);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !ended.isEmpty(); }, 20000));
    EXPECT_EQ(summary(), text("Processing cancelled."));
    const auto done = std::ranges::count_if(model.files(), &FileItem::isProcessed);
    EXPECT_GE(done, 1);
    EXPECT_LE(done, 8);
    EXPECT_EQ(row(199).conversionStatus, ConversionStatus::waiting);
    EXPECT_EQ(error(199), QString());
}

TEST_F(Batch, DoesNotMistakeNewRowsForThoseThatVanished) {
    QSemaphore started;
    QSemaphore mayEnd;
    engine.onConvert = [&](const QString&) {
        started.release();
        mayEnd.acquire();
    };
    drop({write(text("a.jpg")), write(text("b.jpg"))});
    QSignalSpy ended(&model, &FileProcessingViewModel::batchEnded);
    model.startConversion(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return started.tryAcquire(); }, 5000));
    model.selection = QSet<QUuid>{row(0).id};
    model.deleteSelected();
    EXPECT_EQ(model.files().size(), 2) << "no deleting while a batch runs";
    model.clearAll();
    drop({write(text("other.jpg"))});
    mayEnd.release(10);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !ended.isEmpty(); }, 20000));
    EXPECT_EQ(ended.front().at(0).toInt(), 0);
    EXPECT_EQ(ended.front().at(1).toInt(), 0);
    ASSERT_EQ(model.files().size(), 1);
    EXPECT_FALSE(row(0).isProcessed);
    EXPECT_EQ(row(0).conversionStatus, ConversionStatus::waiting);
    EXPECT_FALSE(QFile::exists(path(text("a.png")))) << "nothing is written for a row that is gone";
}

TEST_F(Batch, OverwritesNothingWhenTheSourceChangesMeanwhile) {
    write(text("a.png"), "what stood there");
    engine.onConvert = [&](const QString&) { write(text("a.jpg"), "another picture altogether"); };
    drop({write(text("a.jpg"))});
    runToEnd();
    EXPECT_EQ(error(0), text("Processing failed: The file changed while it was being converted. Please try again."));
    EXPECT_EQ(read(text("a.png")), "what stood there");
}

TEST_F(Batch, DoesNotReplaceAGoodFileByJunk) {
    write(text("junk.png"), "what stood there");
    drop({write(text("junk.jpg"))});
    runToEnd();
    EXPECT_FALSE(row(0).isProcessed);
    EXPECT_EQ(read(text("junk.png")), "what stood there");
}

TEST_F(Batch, DoesNotReplaceItsSourceThroughALink) {
    drop({write(text("a.png"))});
    QFile::link(path(text("a.png")), path(text("a.jpg")));
    runToEnd();
    EXPECT_EQ(error(0), text("Processing failed: The result would replace the original. Please set a prefix or a "
                             "suffix."));
    EXPECT_EQ(read(text("a.png")), "content");
}

TEST_F(Batch, DoesNotLetAConversionReplaceItsSource) {
    drop({write(text("a.jpg"))});
    model.setOutputFormat(0, ImageFormat::jpeg);
    runToEnd();
    EXPECT_EQ(error(0), text("Processing failed: The result would replace the original. Please set a prefix or a "
                             "suffix."));
    EXPECT_EQ(read(text("a.jpg")), "content");
}

TEST_F(Batch, CompressesAfterConversionWhereThereIsARecipe) {
    settings.convertCompressionEnabled = true;
    settings.compressionSuffix = text("-small");
    settings.pngCompressionLevel = 4;
    double given = 0;
    QString temporary;
    engine.onCompress = [&](const QString& input, const QString& output, double value) {
        given = value;
        temporary = output;
        QFile result(output);
        return input.endsWith(text("-small.png")) && result.open(QIODevice::WriteOnly) && result.write("small") > 0;
    };
    drop({write(text("a.jpg")), write(text("b.jpg"))});
    model.setOutputFormat(1, ImageFormat::bmp);
    runToEnd();
    EXPECT_EQ(given, 4);
    EXPECT_EQ(read(text("a-small.png")), "small");
    EXPECT_TRUE(row(0).wasCompressed);
    EXPECT_EQ(row(0).convertedSize, 17);
    EXPECT_EQ(row(0).savingsText(), text("70.6%"));
    EXPECT_FALSE(row(1).wasCompressed);
    EXPECT_EQ(read(text("b.bmp")), "converted 1 b.jpg") << "no recipe, no affix";
    EXPECT_FALSE(temporary.isEmpty() || QFile::exists(temporary));
}

TEST_F(Batch, KeepsTheConvertedFileWhenTheRecipeGivesNothing) {
    settings.convertCompressionEnabled = true;
    drop({write(text("a.jpg"))});
    runToEnd();
    EXPECT_TRUE(row(0).isProcessed);
    EXPECT_FALSE(row(0).wasCompressed);
    EXPECT_EQ(row(0).savingsText(), std::nullopt);
    EXPECT_EQ(read(text("a.png")), "converted 1 a.jpg");
}

TEST_F(Batch, LeavesARowWaitingWhoseTargetChangedMeanwhile) {
    drop({write(text("a.jpg"))});
    engine.onConvert = [this](const QString&) {
        QMetaObject::invokeMethod(
            &model, [this] { model.setOutputFormat(0, ImageFormat::webp); }, Qt::BlockingQueuedConnection);
    };
    runToEnd();
    EXPECT_FALSE(row(0).isProcessed);
    EXPECT_EQ(row(0).errorMessage, std::nullopt);
    engine.onConvert = {};
    runToEnd();
    EXPECT_TRUE(row(0).isProcessed);
    EXPECT_TRUE(QFile::exists(folder.filePath(text("a.webp"))));
}

TEST_F(Batch, LeavesTheEventLoopFree) {
    engine.onConvert = [](const QString&) { QThread::msleep(100); };
    QStringList files;
    for (int number = 0; number < 8; ++number) {
        files << write(numbered(number));
    }
    drop(files);
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(10);
    runToEnd();
    EXPECT_GE(ticks, 8) << "blocking work on the event loop's thread";
}

TEST(BatchLifetime, EndsInOrderWhenTheModelGoes) {
    setLogSink({});
    const QTemporaryDir folder;
    QFile file(folder.filePath(text("a.jpg")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    FakeEngine engine;
    std::atomic<bool> started = false;
    engine.onConvert = [&](const QString&) {
        started = true;
        QThread::msleep(50);
    };
    {
        FileProcessingViewModel model(engine);
        QSignalSpy inserted(&model, &FileProcessingViewModel::filesInserted);
        model.handleDrop({QUrl::fromLocalFile(file.fileName())});
        ASSERT_TRUE(QTest::qWaitFor([&] { return !inserted.isEmpty(); }, 5000));
        model.startConversion(false);
        ASSERT_TRUE(QTest::qWaitFor([&] { return started.load(); }, 5000));
    }
    EXPECT_TRUE(QFile::exists(folder.filePath(text("a.png")))) << "what was in flight is finished";
}

TEST(AsyncSemaphore, PassesPermitsInTheOrderOfComing) {
    AsyncSemaphore semaphore(1);
    std::vector<int> order;
    const auto user = [&](int number) -> QCoro::Task<> {
        co_await semaphore.wait();
        order.push_back(number);
    };
    const auto first = user(0);
    const auto second = user(1);
    const auto third = user(2);
    EXPECT_EQ(order, std::vector{0});
    EXPECT_EQ(semaphore.waiting(), 2U);
    semaphore.signal();
    semaphore.signal();
    semaphore.signal();
    EXPECT_EQ(order, std::vector{0}) << "signal() runs no other's code";
    QCoreApplication::processEvents();
    EXPECT_EQ(order, (std::vector{0, 1, 2}));
    EXPECT_EQ(semaphore.permits(), 1);
}

}  // namespace
}  // namespace sorvik
