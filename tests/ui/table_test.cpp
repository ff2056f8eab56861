#include <gmock/gmock.h>

#include <QMenu>
#include <QPaintEvent>
#include <QScrollBar>

#include <mutex>
#include <numeric>
#include <semaphore>

#include "ui/table/column_widths.h"
#include "ui/table/metadata_popover_view.h"
#include "window_fixture.h"

namespace sorvik {
namespace {

using testing::Contains;
using testing::Not;

TEST(ColumnWidths, FillTheTableWithinTheirBounds) {
    const auto sum = [](const std::vector<int>& widths) { return std::accumulate(widths.begin(), widths.end(), 0); };
    for (const ProcessingMode mode : {ProcessingMode::convert, ProcessingMode::compress}) {
        const std::vector<int> columns = columnsOf(mode);
        for (const int available : {100, 560, 720, 780, 900, 1600}) {
            const std::vector<int> widths = fittedWidths(mode, available);
            for (std::size_t each = 0; each < columns.size(); ++each) {
                EXPECT_EQ(widths[each], allowedWidth(columnRow(columns[each]), widths[each])) << available;
            }
            EXPECT_TRUE(sum(widths) == available || available < 500) << available;
        }
    }
}

class TableTest : public WindowTest {
protected:
    /// Where the table has painted.
    class PaintWatch final : public QObject {
    public:
        explicit PaintWatch(QWidget& widget) : widget_(widget) { widget.installEventFilter(this); }
        ~PaintWatch() override { widget_.removeEventFilter(this); }
        QRegion painted;

    protected:
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint) {
                painted += static_cast<QPaintEvent*>(event)->region();
            }
            return false;
        }

    private:
        QWidget& widget_;
    };

    QStringList files(int count, const QString& ending = QStringLiteral("bmp")) {
        QStringList paths;
        for (int number = 0; number < count; ++number) {
            paths << write(QStringLiteral("file%1.%2").arg(number, 3, 10, QChar(u'0')).arg(ending), "x");
        }
        return paths;
    }
};

TEST_F(TableTest, RedrawsOnlyTheRowThatChanged) {
    drop(files(8));
    QTest::qWait(200);
    PaintWatch watch(*table().viewport());
    list().setOutputFormat(qsizetype{3}, ImageFormat::webp);
    QTest::qWait(50);
    EXPECT_TRUE(watch.painted.contains(cell(3, Column::to).center()));
    EXPECT_FALSE(watch.painted.contains(cell(2, Column::to).center()));
    EXPECT_FALSE(watch.painted.contains(cell(4, Column::to).center()));
}

TEST_F(TableTest, APickerChoiceMakesAFinishedRowWaitAgain) {
    drop({copy(QStringLiteral("jpeg/concert.jpg"), QStringLiteral("wine.jpg"))});
    click("primaryButton");
    waitForEnd();
    ASSERT_EQ(cellText(0, Column::status), QStringLiteral("Done"));
    table().setFocus();
    table().setCurrentIndex(table().model()->index(0, columnIndex(Column::to)));
    QTest::keyClick(&table(), Qt::Key_Space);
    auto* menu = table().findChild<QMenu*>(QStringLiteral("formatMenu"));
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->activeAction()->text(), QStringLiteral("PNG"));
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(row(0).outputFormat, ImageFormat::webp);
    EXPECT_EQ(cellText(0, Column::status), QStringLiteral("Waiting"));
}

TEST_F(TableTest, TheDeleteKeyWorksWithItsRepeatAndKeepsThePlace) {
    drop(files(60));
    table().setFocus();
    table().selectRow(40);
    table().scrollTo(table().model()->index(40, 1), QAbstractItemView::PositionAtTop);
    const int scrolled = table().verticalScrollBar()->value();
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(list().files().size(), 59U);
    EXPECT_EQ(table().currentIndex().row(), 40);
    EXPECT_EQ(table().verticalScrollBar()->value(), scrolled);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), true);
    table().selectRow(40);
    QApplication::sendEvent(&table(), &repeat);
    EXPECT_TRUE(repeat.isAccepted());
    EXPECT_EQ(list().files().size(), 58U);
}

TEST_F(TableTest, AClickOnAControlOfARowLeavesTheHighlightedRows) {
    drop(files(5));
    table().selectAll();
    clickCell(2, Column::check);
    EXPECT_EQ(list().selection.value().size(), 5);
    clickCell(2, Column::size);
    EXPECT_EQ(list().selection.value().size(), 1);
}

TEST_F(TableTest, RevealAsksForTheSource) {
    drop(files(1));
    QSignalSpy asked(&window, &RootView::revealRequested);
    clickCell(0, Column::file);
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.front().front().toUrl(), row(0).url);
}

TEST_F(TableTest, ThePopoverListsWhatThePictureSays) {
    drop({copy(QStringLiteral("jpeg/Canon_40D.jpg"), QStringLiteral("camera.jpg")),
          write(QStringLiteral("junk.jpg"), "junk")});
    auto& icons = *window.findChild<MetadataIcons*>();
    QTRY_VERIFY_WITH_TIMEOUT(icons.answer(row(0).id) && icons.answer(row(1).id), patience);
    EXPECT_FALSE(icons.answer(row(1).id)->hasMetadata);
    table().setFocus();
    table().setCurrentIndex(table().model()->index(0, columnIndex(Column::name)));
    QTest::keyClick(&table(), Qt::Key_Space);
    auto* popover = table().findChild<MetadataPopoverView*>();
    ASSERT_NE(popover, nullptr);
    QStringList texts;
    for (const QLabel* label : popover->findChildren<QLabel*>()) {
        texts << label->text();
    }
    EXPECT_THAT(texts, Contains(QStringLiteral("Camera Make:")));
    EXPECT_THAT(texts, Contains(QStringLiteral("Canon")));
    QTest::keyClick(popover, Qt::Key_Escape);
    EXPECT_FALSE(popover->isVisible());
}

/// A reader whose answers wait until the test lets them go.
struct HeldReader {
    std::mutex lock;
    QStringList asked;
    QStringList read;
    std::counting_semaphore<> mayAnswer{0};

    [[nodiscard]] MetadataIcons::Reader reader() {
        return {[this](const QUrl& url) {
                    {
                        const std::lock_guard guard(lock);
                        asked << url.fileName();
                    }
                    mayAnswer.acquire();
                    return true;
                },
                [this](const QUrl& url) {
                    const std::lock_guard guard(lock);
                    read << url.fileName();
                    return QMap<QString, QString>();
                }};
    }
};

FileItem jpegRow(const QString& name) {
    FileItem item;
    item.id = QUuid::createUuid();
    item.url = QUrl::fromLocalFile(QStringLiteral("/nowhere/") + name);
    item.inputFormat = InputFormat::jpeg;
    return item;
}

TEST(MetadataIconsTest, RowsThatLeaveAreNotAskedAndNothingOfThemIsShown) {
    HeldReader held;
    MetadataIcons icons(held.reader());
    std::vector<FileItem> rows;
    for (int number = 0; number < 6; ++number) {
        rows.push_back(jpegRow(QStringLiteral("%1.jpg").arg(number)));
    }
    QSignalSpy answered(&icons, &MetadataIcons::answered);
    icons.show({rows.begin(), rows.begin() + 4});
    QTRY_COMPARE_WITH_TIMEOUT(held.asked.size(), 2, 20000);
    icons.show({rows.begin() + 4, rows.end()});
    held.mayAnswer.release(10);
    QTRY_COMPARE_WITH_TIMEOUT(answered.size(), 2, 20000);
    EXPECT_THAT(held.asked, Not(Contains(QStringLiteral("2.jpg"))));
    EXPECT_THAT(held.asked, Not(Contains(QStringLiteral("3.jpg"))));
    EXPECT_EQ(held.read.size(), 2) << "only of rows that are seen";
    EXPECT_FALSE(icons.answer(rows[0].id));
    EXPECT_TRUE(icons.answer(rows[5].id)->hasMetadata);
}

}  // namespace
}  // namespace sorvik
