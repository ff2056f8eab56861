// Rows, the selection and what derives from it.

#include "list_fixture.h"

namespace sorvik {
namespace {

using WorkList = ListTest<FakeEngine>;

QString text(const char* literal) { return QString::fromUtf8(literal); }

TEST_F(WorkList, TakesAnyUrlsInTheirOrder) {
    QDir(folder.path()).mkdir(text("folder.d"));
    drop({write(text("a.JPG")), write(text("notes.txt")), path(text("gone.png")), path(text("folder.d"))});
    ASSERT_EQ(model.files().size(), 4);
    EXPECT_EQ(row(0).inputFormat, InputFormat::jpeg);
    EXPECT_EQ(row(0).outputFormat, ImageFormat::png);
    EXPECT_EQ(row(0).originalSize, 7);
    EXPECT_EQ(row(0).conversionStatus, ConversionStatus::waiting);
    EXPECT_EQ(row(1).inputFormat, std::nullopt);
    EXPECT_EQ(row(1).outputFormat, std::nullopt);
    EXPECT_EQ(error(1), text("Not supported format"));
    EXPECT_EQ(row(2).originalSize, 0);
    EXPECT_EQ(error(2), QString());
    EXPECT_EQ(error(3), text("Not supported format"));

    QSignalSpy inserted(&model, &FileProcessingViewModel::filesInserted);
    EXPECT_TRUE(
        model.handleDrop({QUrl(), QUrl(text("https://example.org/x.png")), QUrl::fromLocalFile(path(text("a.JPG")))}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !inserted.isEmpty(); }, 5000));
    ASSERT_EQ(model.files().size(), 6) << "an empty URL adds nothing, the same file twice makes two rows";
    EXPECT_NE(row(0).id, row(5).id);
}

TEST_F(WorkList, RefusesInCompressModeWhatCannotBeCompressed) {
    settings.processingMode = ProcessingMode::compress;
    drop({write(text("a.heic")), write(text("b.png"))});
    EXPECT_EQ(error(0), text("Not supported for compression"));
    EXPECT_EQ(row(0).outputFormat, ImageFormat::jpeg);
    EXPECT_EQ(error(1), QString());
    model.resetAll();
    EXPECT_EQ(error(0), QString());
}

TEST_F(WorkList, OffersWhatAllCheckedFormatsHave) {
    drop({path(text("a.gif")), path(text("b.png")), path(text("c.heic")), path(text("notes.txt"))});
    const auto check = [&](std::initializer_list<std::size_t> rows) {
        QSet<QUuid> checked;
        for (const std::size_t each : rows) {
            checked << row(each).id;
        }
        model.updateSelection(checked);
    };
    check({0});
    EXPECT_EQ(model.commonOutputFormats(), (std::vector{ImageFormat::png, ImageFormat::webp, ImageFormat::avif}));
    EXPECT_TRUE(row(0).isSelected);
    check({0, 1});
    EXPECT_EQ(std::set(model.commonOutputFormats().begin(), model.commonOutputFormats().end()),
              (std::set{ImageFormat::webp, ImageFormat::avif}));
    check({0, 1, 2});
    EXPECT_EQ(model.commonOutputFormats(), std::vector{ImageFormat::avif});
    check({3});
    EXPECT_TRUE(model.commonOutputFormats().empty());
    EXPECT_EQ(model.selectedFileItems().size(), 1);
}

TEST_F(WorkList, DeletesHighlightedRowsAndClears) {
    drop({path(text("a.gif")), path(text("b.png"))});
    model.updateSelection({row(0).id, row(1).id});
    model.selection = QSet<QUuid>{row(0).id};
    model.deleteSelected();
    ASSERT_EQ(model.files().size(), 1);
    EXPECT_EQ(row(0).name(), text("b.png"));
    EXPECT_EQ(model.selectedFiles().size(), 2) << "ids of rows that are gone stay and match nothing";
    EXPECT_EQ(model.selectedFileItems().size(), 1);
    model.clearAll();
    EXPECT_TRUE(model.files().empty());
    EXPECT_TRUE(model.selectedFiles().isEmpty());
}

TEST_F(WorkList, TakesNoFilesThatWereDroppedOnAListThatIsGone) {
    settings.processingMode = ProcessingMode::compress;
    settings.autoCompressionEnabled = true;
    const QSignalSpy inserted(&model, &FileProcessingViewModel::filesInserted);
    model.handleDrop({QUrl::fromLocalFile(write(text("a.jpg")))});
    settings.processingMode = ProcessingMode::convert;
    model.clearAll();
    model.handleDrop({QUrl::fromLocalFile(write(text("b.png")))});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !inserted.isEmpty(); }, 5000));
    QTest::qWait(200);  // longer than what is compressed by itself waits
    ASSERT_EQ(model.files().size(), 1U);
    EXPECT_EQ(row(0).name(), text("b.png"));
    EXPECT_FALSE(row(0).isProcessed);
}

TEST(FileItem, TellsWhatCompressionSaved) {
    FileItem item;
    item.originalSize = 1000;
    item.outputSize = 875;
    EXPECT_EQ(item.savingsText(), std::nullopt) << "not compressed";
    item.wasCompressed = true;
    EXPECT_EQ(item.savingsText(), text("12.5%"));
    item.convertedSize = 880;
    EXPECT_EQ(item.savingsText(), text("0.6%"));
    item.convertedSize = 879;
    EXPECT_EQ(item.savingsText(), text("0%"));
    item.outputSize = 2000;
    EXPECT_EQ(item.savingsText(), text("0%"));
    item.convertedSize = 0;
    EXPECT_EQ(item.savingsText(), std::nullopt);
}

}  // namespace
}  // namespace sorvik
