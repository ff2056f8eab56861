#include <gmock/gmock.h>

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QMenu>

#include "window_fixture.h"

namespace sorvik {
namespace {

using testing::ElementsAre;

TEST_F(WindowTest, DropsBecomeRowsAndWhatIsNoPictureSaysSo) {
    EXPECT_EQ(text("dropZoneText"), QStringLiteral("Drop your images here"));
    EXPECT_TRUE(control<QWidget>("dropZone").isVisible());
    EXPECT_FALSE(control<QPushButton>("primaryButton").isEnabled());
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("a folder")));

    drop({copy(QStringLiteral("jpeg/concert.jpg"), QStringLiteral("wine.jpg"))}, &control<QWidget>("dropZone"));
    EXPECT_TRUE(table().isVisible());
    EXPECT_EQ(text("readyLabel"), QStringLiteral("1 image ready. Drag more images to add them."));

    drop({write(QStringLiteral("notes.txt"), "words"), folder.filePath(QStringLiteral("a folder"))},
         table().viewport());
    EXPECT_EQ(text("readyLabel"), QStringLiteral("3 images ready. Drag more images to add them."));
    for (const int unknown : {1, 2}) {
        EXPECT_EQ(error(static_cast<std::size_t>(unknown)), QStringLiteral("Not supported format"));
        EXPECT_EQ(cellText(unknown, Column::status), QStringLiteral("Invalid format"));
        EXPECT_EQ(cellText(unknown, Column::to), QStringLiteral("-"));
        EXPECT_EQ(hotspotOf(row(static_cast<std::size_t>(unknown)), Column::to, false), Hotspot::nothing);
        EXPECT_EQ(hotspotOf(row(static_cast<std::size_t>(unknown)), Column::file, false), Hotspot::nothing);
        EXPECT_GT(table().rowHeight(unknown), table().rowHeight(0));
    }
}

TEST_F(WindowTest, PastingCountsAsDroppingAndOnlyFilesAreTaken) {
    const QString path = copy(QStringLiteral("jpeg/concert.jpg"), QStringLiteral("wine.jpg"));
    auto* data = new QMimeData;
    data->setUrls({QUrl(QStringLiteral("https://example.org/a.jpg")), QUrl::fromLocalFile(path)});
    QApplication::clipboard()->setMimeData(data);
    QSignalSpy inserted(&list(), &FileProcessingViewModel::filesInserted);
    QTest::keyClick(&window, Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(inserted.wait(patience));
    ASSERT_EQ(list().files().size(), 1U);
    EXPECT_EQ(row(0).path(), path);
}

TEST_F(WindowTest, ConvertsShowsTheOutcomeAndRunsAgain) {
    drop({writeBig(QStringLiteral("big.bmp")), write(QStringLiteral("junk.jpg"), "junk")});
    list().setOutputFormat(qsizetype{0}, ImageFormat::png);
    EXPECT_EQ(control<QPushButton>("primaryButton").text(), QStringLiteral("Convert"));
    click("primaryButton");
    settle();
    EXPECT_EQ(control<QPushButton>("primaryButton").text(), QStringLiteral("Converting..."));
    EXPECT_FALSE(control<QPushButton>("primaryButton").isEnabled());
    EXPECT_TRUE(control<QPushButton>("stopButton").isVisible());
    EXPECT_EQ(text("progressLabel"), QStringLiteral("0 of 2"));
    waitForEnd();

    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("big.png"))));
    EXPECT_EQ(cellText(0, Column::status), QStringLiteral("Done"));
    EXPECT_NE(cellText(0, Column::size), QStringLiteral("-"));
    EXPECT_EQ(cellText(1, Column::status), QStringLiteral("Waiting"));
    EXPECT_TRUE(error(1).startsWith(QStringLiteral("Processing failed: ")));
    EXPECT_EQ(text("completionLabel"),
              QStringLiteral("Conversion complete. 1 succeeded, 1 failed. Check status column for details."));

    click("againButton");
    settle();
    EXPECT_EQ(cellText(0, Column::status), QStringLiteral("Waiting"));
    EXPECT_EQ(cellText(0, Column::size), QStringLiteral("-"));
    EXPECT_EQ(error(1), QString());
}

TEST_F(WindowTest, CheckedRowsShareOneFormatAndGetATargetTogether) {
    drop({write(QStringLiteral("a.jpg"), "a"), write(QStringLiteral("b.png"), "b"), write(QStringLiteral("c.jpg"), "c"),
          write(QStringLiteral("notes.txt"), "words")});
    EXPECT_FALSE(control<QWidget>("selectionStrip").isVisible());
    clickCell(1, Column::check);
    EXPECT_EQ(text("selectedCountLabel"), QStringLiteral("1 PNG selected"));
    clickCell(0, Column::check);
    EXPECT_THAT(checked(), ElementsAre(QStringLiteral("a.jpg")));
    EXPECT_EQ(control<QPushButton>("selectAllFormatButton").text(), QStringLiteral("Select all JPEG"));
    click("selectAllFormatButton");
    settle();
    EXPECT_EQ(text("selectedCountLabel"), QStringLiteral("2 JPEG selected"));

    auto& picker = control<QComboBox>("bulkFormatPicker");
    EXPECT_EQ(picker.currentText(), QStringLiteral("Select format"));
    EXPECT_EQ(picker.count(), 8);
    EXPECT_FALSE(control<QPushButton>("updateAllButton").isEnabled());
    QTest::keyClicks(&picker, QStringLiteral("TIFF"));
    EXPECT_TRUE(control<QPushButton>("updateAllButton").isEnabled());
    click("updateAllButton");
    settle();
    EXPECT_EQ(row(0).outputFormat, ImageFormat::tiff);
    EXPECT_EQ(row(1).outputFormat, ImageFormat::jpeg);
    EXPECT_EQ(row(2).outputFormat, ImageFormat::tiff);
    EXPECT_THAT(checked(), ElementsAre());
    EXPECT_FALSE(control<QWidget>("selectionStrip").isVisible());

    clickCell(3, Column::check);
    EXPECT_EQ(text("selectedCountLabel"), QStringLiteral("1 files selected"));
    EXPECT_FALSE(control<QPushButton>("updateAllButton").isEnabled());
    EXPECT_FALSE(control<QPushButton>("selectAllFormatButton").isVisible());
    EXPECT_EQ(picker.count(), 1);
    EXPECT_EQ(picker.currentIndex(), 0);
    click("clearSelectionButton");
    settle();
    EXPECT_THAT(checked(), ElementsAre());
}

TEST_F(WindowTest, SwitchingTabsEmptiesTheListAlsoDuringABatch) {
    auto& tabs = control<QTabWidget>("modeTabs");
    drop({copy(QStringLiteral("jpeg/concert.jpg"), QStringLiteral("wine.jpg"))});
    tabs.setCurrentIndex(1);
    EXPECT_EQ(settings.processingMode.value(), ProcessingMode::compress);
    EXPECT_TRUE(list().files().empty());
    EXPECT_TRUE(control<QWidget>("dropZone").isVisible());
    drop({writeBig(QStringLiteral("big.png")), write(QStringLiteral("a.bmp"), "BM")});
    EXPECT_EQ(control<QPushButton>("primaryButton").text(), QStringLiteral("Compress"));
    EXPECT_EQ(error(1), QStringLiteral("Not supported for compression"));
    EXPECT_TRUE(table().isColumnHidden(columnIndex(Column::to)));
    clickCell(0, Column::name);

    click("primaryButton");
    QTRY_COMPARE_WITH_TIMEOUT(row(0).conversionStatus, ConversionStatus::compressing, patience);
    QTest::qWait(300);  // the tool is at work for seconds; a row that goes before it starts ends its job at once
    tabs.setCurrentIndex(0);
    settle();
    EXPECT_TRUE(list().isConverting);
    drop({write(QStringLiteral("b.png"), "b")});
    EXPECT_FALSE(control<QPushButton>("primaryButton").isEnabled());
    waitForEnd();
    EXPECT_EQ(row(0).conversionStatus, ConversionStatus::waiting);
    EXPECT_EQ(error(0), QString());
    EXPECT_TRUE(control<QPushButton>("primaryButton").isEnabled());
}

TEST_F(WindowTest, DeletingIsRefusedDuringABatchAndStopEndsIt) {
    const QString picture = writeBig(QStringLiteral("big.bmp"));
    QStringList paths;
    for (int copyNumber = 0; copyNumber < 12; ++copyNumber) {
        paths << QStringLiteral("%1/%2.bmp").arg(folder.path()).arg(copyNumber);
        ASSERT_TRUE(QFile::copy(picture, paths.back()));
    }
    drop(paths);
    table().setFocus();
    QTest::keyClick(&window, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(list().selection.value().size(), 12);
    click("primaryButton");
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(list().files().size(), 12U);
    settle();
    click("stopButton");
    waitForEnd();
    EXPECT_EQ(text("completionLabel"), QStringLiteral("Processing cancelled."));
    EXPECT_LT(std::ranges::count_if(list().files(), &FileItem::isProcessed), 12);
}

TEST_F(WindowTest, AWindowThatGoesDuringABatchFinishesWhatIsInFlight) {
    auto second = std::make_unique<RootView>(engine, settings);
    second->show();
    QSignalSpy inserted(&second->content().list(), &FileProcessingViewModel::filesInserted);
    QList<QUrl> urls;
    for (const auto* name : {"1.bmp", "2.bmp", "3.bmp", "4.bmp"}) {
        urls << QUrl::fromLocalFile(writeBig(QString::fromLatin1(name)));
    }
    second->addFiles(urls);
    ASSERT_TRUE(inserted.wait(patience));
    second->content().start();
    QTRY_COMPARE_WITH_TIMEOUT(second->content().list().files().front().conversionStatus, ConversionStatus::converting,
                              patience);
    second.reset();
    const QStringList outputs = QDir(folder.path()).entryList({QStringLiteral("*.jpg"), QStringLiteral("*.png")});
    EXPECT_FALSE(outputs.isEmpty());
    EXPECT_LT(outputs.size(), 4);
    for (const QString& output : outputs) {
        EXPECT_EQ(QImage(folder.filePath(output)).size(), QSize(2400, 2400));
    }
}

TEST_F(WindowTest, PlaceAndColumnsAreRemembered) {
    window.setGeometry(40, 30, 900, 520);
    drop({write(QStringLiteral("a.jpg"), "a")});
    table().setColumnWidth(columnIndex(Column::name), 390);
    table().setColumnWidth(columnIndex(Column::from), 10);
    EXPECT_EQ(table().columnWidth(columnIndex(Column::from)), 60) << "the column's minimum";
    window.close();
    SystemBatchEngine otherEngine;
    {
        auto first = std::make_unique<RootView>(otherEngine, settings);
        first->show();
        first->content().table().setColumnWidth(columnIndex(Column::name), 390);
        first->setGeometry(40, 30, 900, 520);
        first->close();
    }
    RootView second(otherEngine, settings);
    EXPECT_EQ(second.size(), QSize(900, 520));
    second.show();
    EXPECT_EQ(second.content().table().columnWidth(columnIndex(Column::name)), 390);
}

TEST_F(WindowTest, EveryControlHasANameForTestsAndForScreenReaders) {
    drop({write(QStringLiteral("a.jpg"), "a")});
    clickCell(0, Column::check);
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isOurs = widget->window() == &window && !widget->objectName().startsWith(QStringLiteral("qt_"));
        if (!isOurs || widget->focusPolicy() == Qt::NoFocus) {
            continue;
        }
        EXPECT_FALSE(widget->objectName().isEmpty()) << widget->metaObject()->className();
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
        ASSERT_NE(accessible, nullptr);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << widget->objectName().toStdString();
    }
}

}  // namespace
}  // namespace sorvik
