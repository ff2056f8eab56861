// The compression batch: which rows it takes, where results go, and what happens to the original.

#include <QTimer>

#include "core/compression_batch.h"
#include "list_fixture.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

class Compression : public ListTest<FakeEngine> {
protected:
    Compression() {
        settings.processingMode = ProcessingMode::compress;
        engine.onCompress = [this](const QString& input, const QString& output, double value) {
            EXPECT_NE(QFileInfo(input).canonicalFilePath(), QFileInfo(output).canonicalFilePath());
            note(output);
            const std::lock_guard guard(lock);
            values[fileName(input).toString()] = value;
            QFile result(output);
            return result.open(QIODevice::WriteOnly) && result.write("small") > 0;
        };
    }

    /// Called in the pool.
    void note(const QString& output) {
        const std::lock_guard guard(lock);
        outputs << output;
    }

    [[nodiscard]] bool anyOutputLeft() const {
        return std::ranges::any_of(outputs, [](const QString& output) { return QFile::exists(output); });
    }

    std::mutex lock;
    std::map<QString, double> values;
    QStringList outputs;
};

TEST(CompressionSummary, TakesTheFirstThatFits) {
    EXPECT_EQ(compressionSummary(1, 1, true), text("Compression cancelled."));
    EXPECT_EQ(compressionSummary(0, 2, false), text("Compression failed for all files."));
    EXPECT_EQ(compressionSummary(3, 2, false), text("Compression complete. 3 file(s) succeeded."));
    EXPECT_EQ(compressionSummary(0, 0, false), std::nullopt);
}

TEST_F(Compression, ShrinksBesideTheSourceWithTheValueOfTheFormat) {
    settings.compressionPrefix = text("s-");
    settings.compressionSuffix = text("-s");
    settings.outputPrefix = text("not here ");
    settings.jpegCompressionQuality = 70;
    settings.pngCompressionLevel = 12.7;
    settings.gifCompressionLevel = 3.9;
    drop({write(text("a.jpeg")), write(text("b.png")), write(text("c.gif")), write(text("d.pdf"))});
    compressToEnd();
    EXPECT_EQ(read(text("s-a-s.jpg")), "small");
    EXPECT_EQ(read(text("a.jpeg")), "content");
    EXPECT_EQ(values, (std::map<QString, double>{
                          {text("a.jpeg"), 70}, {text("b.png"), 9}, {text("c.gif"), 3}, {text("d.pdf"), 85}}));
    EXPECT_TRUE(row(0).isProcessed);
    EXPECT_EQ(row(0).conversionStatus, ConversionStatus::done);
    EXPECT_EQ(row(0).outputSize, 5);
    EXPECT_EQ(row(0).convertedSize, std::nullopt);
    EXPECT_EQ(row(0).savingsText(), text("28.6%")) << "of the original";
    EXPECT_EQ(engine.replacements, 0);
    EXPECT_EQ(summary(), text("Compression complete. 4 file(s) succeeded."));
}

TEST_F(Compression, ReplacesTheSourceUnderItsOwnNameOrThroughALink) {
    settings.compressionSuffix = text("-s");
    const QString source = write(text("a.jpg"));
    QFile::link(source, path(text("a-s.jpg")));
    drop({source});
    compressToEnd();
    EXPECT_EQ(read(text("a.jpg")), "small") << "the output's name was a link to the source";
    EXPECT_EQ(engine.replacements, 1);

    settings.compressionSuffix = QString();
    drop({write(text("b.png"))});
    compressToEnd();
    EXPECT_EQ(read(text("b.png")), "small");
    EXPECT_EQ(engine.replacements, 2);
}

TEST_F(Compression, LeavesOtherRowsOutWithoutAWord) {
    drop({write(text("a.heic")), write(text("b.psd")), write(text("notes.txt"))});
    EXPECT_EQ(error(0), text("Not supported for compression"));
    compressToEnd();
    EXPECT_EQ(summary(), QString());
    EXPECT_EQ(error(0), text("Not supported for compression"));
    EXPECT_EQ(row(0).conversionStatus, ConversionStatus::waiting);

    drop({write(text("c.webp"))});
    compressToEnd();
    EXPECT_EQ(summary(), text("Compression complete. 1 file(s) succeeded.")) << "the others don't count";
}

TEST_F(Compression, LeavesTheOriginalWhenAnythingFails) {
    engine.onCompress = [this](const QString& input, const QString& output, double) {
        note(output);
        QFile result(output);
        result.open(QIODevice::WriteOnly);
        result.write("junk");
        if (input.endsWith(text("full.jpg"))) {
            throw ConversionError(text("No space left on device"));
        }
        if (input.endsWith(text("edited.jpg"))) {
            write(text("edited.jpg"), "edited meanwhile");
        }
        return !input.endsWith(text("bad.jpg"));
    };
    drop({write(text("bad.jpg")), write(text("full.jpg")), write(text("edited.jpg")), path(text("gone.jpg")),
          write(text("empty.jpg"), "")});
    compressToEnd();
    EXPECT_EQ(error(0), text("Compression failed: The conversion failed. Please ensure the file is not corrupted and "
                             "try again."));
    EXPECT_EQ(error(1), text("Compression failed: Not enough disk space to complete the conversion."));
    EXPECT_EQ(error(2), text("Compression failed: The file changed while it was being converted. Please try again."));
    EXPECT_EQ(error(3), text("Compression failed: The file could not be found. It may have been moved or deleted."));
    EXPECT_EQ(error(4), text("Compression failed: This file is empty."));
    EXPECT_EQ(read(text("bad.jpg")), "content");
    EXPECT_EQ(read(text("full.jpg")), "content");
    EXPECT_EQ(read(text("edited.jpg")), "edited meanwhile");
    EXPECT_EQ(summary(), text("Compression failed for all files."));
    EXPECT_EQ(outputs.size(), 3);
    EXPECT_FALSE(anyOutputLeft());
}

TEST_F(Compression, TakesTurnsOnOneFile) {
    const QString source = write(text("a.jpg"));
    QFile::link(source, path(text("alias.jpg")));
    drop({source, source, path(text("alias.jpg"))});
    compressToEnd();
    EXPECT_EQ(summary(), text("Compression complete. 3 file(s) succeeded."));
    EXPECT_EQ(read(text("a.jpg")), "small");
}

TEST_F(Compression, ADropStartsItWhenTheUserSaysSo) {
    settings.autoCompressionEnabled = true;
    QSignalSpy ended(&model, &FileProcessingViewModel::batchEnded);
    drop({write(text("a.jpg"))});
    ASSERT_TRUE(!ended.isEmpty() || ended.wait(20000));
    EXPECT_TRUE(row(0).isProcessed);

    settings.processingMode = ProcessingMode::convert;
    drop({write(text("b.jpg"))});
    EXPECT_FALSE(ended.wait(300)) << "a drop never starts a conversion";
}

TEST_F(Compression, WithoutSettingsEveryRowFails) {
    drop({write(text("a.jpg"))});
    model.setSettings(nullptr);
    compressToEnd();
    EXPECT_FALSE(row(0).isProcessed);
    EXPECT_EQ(read(text("a.jpg")), "content");
}

}  // namespace
}  // namespace sorvik
