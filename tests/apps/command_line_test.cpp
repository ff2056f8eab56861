#include <gtest/gtest.h>

#include "apps/sorvikbatch/command_line.h"
#include "apps/sorvikbatch/metadata_front.h"
#include "apps/sorvikbatch/row_report.h"
#include "batch_run.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

CommandLine parse(const char* line) { return parseCommandLine(text(line).split(u' '), text("/here")); }

TEST(CommandLine, ReadsAConversion) {
    const auto options = std::get<ConvertOptions>(
        parse("sorvikbatch convert --to JPG --output-prefix new- --strip-metadata a.png ../b.png /c/d.png"));
    EXPECT_EQ(options.to, ImageFormat::jpeg);
    EXPECT_EQ(options.outputPrefix, text("new-"));
    EXPECT_EQ(options.outputSuffix, QString());
    EXPECT_TRUE(options.stripMetadata);
    EXPECT_FALSE(options.common.json);
    EXPECT_FALSE(options.compress);
    EXPECT_EQ(options.common.files, (QStringList{text("/here/a.png"), text("/b.png"), text("/c/d.png")}));
    EXPECT_EQ(std::get<ConvertOptions>(parse("sorvikbatch convert --to webp --output-prefix= a.png")).outputPrefix,
              QString());
    const auto dashed = std::get<ConvertOptions>(parse("sorvikbatch convert --to webp -- -a.png"));
    EXPECT_EQ(dashed.common.files, QStringList{text("/here/-a.png")});
}

TEST(CommandLine, ReadsACompression) {
    const auto options = std::get<CompressOptions>(parse(
        "sorvikbatch compress --compression-suffix _s --json --pdf-quality 1 --png-level 0 --jpeg-quality=100 a.png"));
    EXPECT_TRUE(options.common.json);
    EXPECT_EQ(options.common.files, QStringList{text("/here/a.png")});
    EXPECT_EQ(std::get<MetadataOptions>(parse("sorvikbatch metadata a.png")).common.files, options.common.files);

    AppSettings settings(std::make_shared<MemoryDefaultsStore>());
    applyCompression(options.compression, settings);
    EXPECT_EQ(settings.compressionPrefix.value(), QString());
    EXPECT_EQ(settings.compressionSuffix.value(), text("_s"));
    EXPECT_EQ(settings.jpegCompressionQuality.value(), 100);
    EXPECT_EQ(settings.pngCompressionLevel.value(), 0);
    EXPECT_EQ(settings.pdfCompressionQuality.value(), 0.01) << "1 would be the whole";
    EXPECT_EQ(settings.webpCompressionQuality.value(), 85);

    const auto convert = std::get<ConvertOptions>(
        parse("sorvikbatch convert --to avif --compress --compression-prefix p --webp-quality 1 --heic-quality 2 "
              "--avif-quality 3 --tiff-quality 4 --pdf-quality 5 --gif-level 9 a.png"));
    EXPECT_TRUE(convert.compress);
    applyCompression(convert.compression, settings);
    EXPECT_EQ(settings.compressionPrefix.value(), text("p"));
    EXPECT_EQ(settings.webpCompressionQuality.value(), 1);
    EXPECT_EQ(settings.heicCompressionQuality.value(), 2);
    EXPECT_EQ(settings.avifCompressionQuality.value(), 3);
    EXPECT_EQ(settings.tiffCompressionQuality.value(), 4);
    EXPECT_EQ(settings.pdfCompressionQuality.value(), 0.05);
    EXPECT_EQ(settings.gifCompressionLevel.value(), 9);
}

TEST(CommandLine, SaysWhatIsWrongWithBadUsage) {
    struct Row {
        const char* line;
        const char* reason;
    };
    for (const Row& row : {
             Row{"sorvikbatch", "subcommand"},
             Row{"sorvikbatch convert a.png", "--to"},
             Row{"sorvikbatch convert --to png", "files"},
             Row{"sorvikbatch convert --to psd a.png", "'psd' is no format to convert to; it can be bmp, gif"},
             Row{"sorvikbatch convert --to png --quality 3 a.png", "--quality"},
             Row{"sorvikbatch convert --to png ", "empty name"},
             Row{"sorvikbatch compress", "files"},
             Row{"sorvikbatch compress --to png a.png", "--to"},
             Row{"sorvikbatch metadata", "files"},
             Row{"sorvikbatch compress --jpeg-quality 0 a.png", "--jpeg-quality: '0'"},
             Row{"sorvikbatch compress --pdf-quality 101 a.png", "a whole number from 1 to 100"},
             Row{"sorvikbatch convert --to png --compress --avif-quality 8.5 a.png", "a whole number from 1 to 100"},
             Row{"sorvikbatch compress --heic-quality good a.png", "'good'"},
             Row{"sorvikbatch compress --webp-quality= a.png", "--webp-quality: ''"},
             Row{"sorvikbatch compress --png-level 10 a.png", "a whole number from 0 to 9"},
             Row{"sorvikbatch compress --gif-level 0 a.png", "a whole number from 1 to 9"},
             Row{"sorvikbatch compress --gif-level -1 a.png", "a whole number from 1 to 9"},
         }) {
        const auto parsed = parse(row.line);
        ASSERT_TRUE(std::holds_alternative<Answer>(parsed)) << row.line;
        EXPECT_EQ(std::get<Answer>(parsed).status, statusBadUsage);
        EXPECT_TRUE(std::get<Answer>(parsed).text.contains(text(row.reason)))
            << std::get<Answer>(parsed).text.toStdString();
    }
}

TEST(CommandLine, HelpsCompletely) {
    struct Row {
        const char* line;
        QStringList words;
    };
    const QStringList compression{text("--compression-prefix"), text("--compression-suffix"), text("--jpeg-quality"),
                                  text("--webp-quality"),       text("--heic-quality"),       text("--avif-quality"),
                                  text("--tiff-quality"),       text("--pdf-quality"),        text("--png-level"),
                                  text("--gif-level"),          text("1 to 100, 85"),         text("1 to 9, 7")};
    const QStringList common{text("--json"), text("--verbose"), text("FILE"), text("Exit status")};
    for (const Row& row : {
             Row{"sorvikbatch convert --help",
                 common + compression +
                     QStringList{text("--to"), text("--strip-metadata"), text("--output-prefix"),
                                 text("--output-suffix"), text("--compress "),
                                 text("bmp, gif, heic, ico, jpeg, png, tiff, webp, svg, pdf, avif")}},
             Row{"sorvikbatch compress -h",
                 common + compression + QStringList{text("--heic-quality has no effect here"), text("source's place")}},
             Row{"sorvikbatch metadata --help", common},
             Row{"sorvikbatch --help", {text("convert"), text("compress"), text("metadata")}},
             Row{"sorvikbatch --help-all", common + compression},
         }) {
        const auto help = std::get<Answer>(parse(row.line));
        EXPECT_EQ(help.status, statusSuccess);
        for (const QString& word : row.words) {
            EXPECT_TRUE(help.text.contains(word)) << row.line << ' ' << word.toStdString();
        }
    }
}

FileItem doneRow() {
    FileItem item;
    item.url = QUrl::fromLocalFile(text("/d/a\nb.jpg"));
    item.inputFormat = InputFormat::jpeg;
    item.outputFormat = ImageFormat::webp;
    item.isProcessed = true;
    item.conversionStatus = ConversionStatus::done;
    item.originalSize = 3000;
    item.convertedSize = 2000;
    item.outputSize = 1000;
    item.wasCompressed = true;
    return item;
}

TEST(RowReport, AlignsItsColumns) {
    FileItem failed;
    failed.url = QUrl::fromLocalFile(text("/d/much-longer-name.txt"));
    failed.errorMessage = text("Skipped: Invalid input format");
    const RowReport report({doneRow(), failed});
    EXPECT_EQ(report.line(doneRow()), text("a\\x0ab.jpg            JPEG  WEBP  done  1000 bytes   50.0%"));
    FileItem small = doneRow();
    small.outputSize = 2;
    EXPECT_EQ(report.line(small), text("a\\x0ab.jpg            JPEG  WEBP  done  2 bytes      99.9%"));
    small.wasCompressed = false;
    EXPECT_EQ(report.line(small), text("a\\x0ab.jpg            JPEG  WEBP  done  2 bytes"));
    EXPECT_EQ(report.line(failed), text("much-longer-name.txt  -     -     Skipped: Invalid input format"));
}

TEST(JsonLine, HoldsEveryField) {
    const auto object = QJsonDocument::fromJson(jsonLine(doneRow(), text("/d/o.webp")).toUtf8()).object();
    EXPECT_EQ(object.keys().join(u' '),
              text("convertedSize error from name originalSize outputPath outputSize path saving status to"));
    EXPECT_EQ(object[text("name")].toString(), text("a\nb.jpg"));
    EXPECT_EQ(object[text("from")].toString(), text("JPEG"));
    EXPECT_EQ(object[text("outputSize")].toInt(), 1000);
    EXPECT_EQ(object[text("saving")].toString(), text("50.0%"));
    EXPECT_TRUE(object[text("error")].isNull());
}

TEST(MetadataRecord, IsPrintedWithoutDrivingTheTerminal) {
    const MetadataRecord record{
        text("/d/a.jpg"),
        {{text("Software"), text("\x1b[2J\u009bx ä")}, {text("35mm Focal Length"), text("112mm")}},
        {}};
    EXPECT_EQ(tableText(record), text("35mm Focal Length  112mm\nSoftware           \\x1b[2J\\x9bx ä\n"));
    EXPECT_EQ(tableText({}), text("No metadata\n"));
    const auto object = QJsonDocument::fromJson(jsonLine(record).toUtf8()).object();
    EXPECT_EQ(object.keys().join(u' '), text("error metadata path"));
    EXPECT_EQ(object[text("metadata")].toObject()[text("Software")].toString(), record.table[text("Software")]);
}

}  // namespace
}  // namespace sorvik
