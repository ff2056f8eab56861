#include <gtest/gtest.h>

#include "apps/sorvikbatch/batch_options.h"
#include "apps/sorvikbatch/row_report.h"
#include "batch_run.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

std::variant<ConvertOptions, Answer> parse(const char* line) {
    return parseCommandLine(text(line).split(u' '), text("/here"));
}

TEST(CommandLine, ReadsAConversion) {
    const auto options = std::get<ConvertOptions>(
        parse("sorvikbatch convert --to JPG --output-prefix new- --strip-metadata a.png ../b.png /c/d.png"));
    EXPECT_EQ(options.to, ImageFormat::jpeg);
    EXPECT_EQ(options.outputPrefix, text("new-"));
    EXPECT_EQ(options.outputSuffix, QString());
    EXPECT_TRUE(options.stripMetadata);
    EXPECT_FALSE(options.json);
    EXPECT_EQ(options.files, (QStringList{text("/here/a.png"), text("/b.png"), text("/c/d.png")}));
    EXPECT_EQ(std::get<ConvertOptions>(parse("sorvikbatch convert --to webp --output-prefix= a.png")).outputPrefix,
              QString());
    const auto dashed = std::get<ConvertOptions>(parse("sorvikbatch convert --to webp -- -a.png"));
    EXPECT_EQ(dashed.files, QStringList{text("/here/-a.png")});
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
         }) {
        const auto parsed = parse(row.line);
        ASSERT_TRUE(std::holds_alternative<Answer>(parsed)) << row.line;
        EXPECT_EQ(std::get<Answer>(parsed).status, statusBadUsage);
        EXPECT_TRUE(std::get<Answer>(parsed).text.contains(text(row.reason)))
            << std::get<Answer>(parsed).text.toStdString();
    }
}

TEST(CommandLine, HelpsCompletely) {
    const auto help = std::get<Answer>(parse("sorvikbatch convert --help"));
    EXPECT_EQ(help.status, statusSuccess);
    for (const char* option : {"--to", "--strip-metadata", "--output-prefix", "--output-suffix", "--json", "--verbose",
                               "bmp, gif, heic, ico, jpeg, png, tiff, webp, svg, pdf, avif", "Exit status"}) {
        EXPECT_TRUE(help.text.contains(text(option))) << option;
    }
    EXPECT_TRUE(std::get<Answer>(parse("sorvikbatch --help")).text.contains(text("convert")));
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
    EXPECT_EQ(report.line(doneRow()), text("a\\x0ab.jpg            JPEG  WEBP  done  1000 bytes  50.0%"));
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

}  // namespace
}  // namespace sorvik
