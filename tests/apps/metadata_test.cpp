// The real program on real pictures: what is known of them.

#include <algorithm>

#include "batch_run.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

class Metadata : public BatchTest {};

TEST_F(Metadata, PrintsATableAFile) {
    bring(text("jpeg/Canon_40D.jpg"));
    bring(text("webp/1.webp"), text("odd[1].webp"));
    const BatchRun one = run({text("metadata"), text("Canon_40D.jpg")});
    EXPECT_EQ(one.status, 0);
    EXPECT_TRUE(one.output.contains(text("\nCamera Make           Canon\n"))) << one.output.toStdString();
    EXPECT_TRUE(one.output.contains(text("\nFlash                 Flash Fired, Compulsory\n")));
    const QStringList lines = one.output.split(u'\n', Qt::SkipEmptyParts);
    EXPECT_TRUE(std::ranges::is_sorted(lines));

    const BatchRun two = run({text("metadata"), text("odd[1].webp"), text("Canon_40D.jpg")});
    EXPECT_EQ(two.status, 0);
    EXPECT_EQ(two.output, text("odd[1].webp\nNo metadata\n\nCanon_40D.jpg\n") + one.output);
    EXPECT_EQ(two.errors, QString());
}

TEST_F(Metadata, GivesJsonInTheOrderOfTheFiles) {
    QStringList files;
    for (int number = 0; number < 6; ++number) {
        files << bring(text(number % 2 == 0 ? "jpeg/DSCN0010.jpg" : "webp/1.webp"),
                       text("f%1").arg(number) + text(number % 2 == 0 ? ".jpg" : ".webp"));
    }
    const BatchRun batch = run(QStringList{text("metadata"), text("--json")} + files);
    EXPECT_EQ(batch.status, 0);
    const auto rows = batch.rows();
    ASSERT_EQ(rows.size(), 6);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        EXPECT_EQ(rows[index][text("path")].toString(), files[static_cast<qsizetype>(index)]);
        const QJsonObject table = rows[index][text("metadata")].toObject();
        EXPECT_EQ(table[text("Camera Model")].toString(), index % 2 == 0 ? text("COOLPIX P6000") : QString());
        EXPECT_EQ(table.isEmpty(), index % 2 == 1);
    }
}

TEST_F(Metadata, SaysWhichFilesWereNotRead) {
    bring(text("jpeg/Canon_40D.jpg"));
    write(text("notes.txt"), "no picture");
    write(text("random.png"), "no picture either");
    write(text("empty.jpg"), {});
    const BatchRun batch = run({text("metadata"), text("gone.jpg"), text("notes.txt"), text("random.png"),
                                text("empty.jpg"), text("."), text("Canon_40D.jpg")});
    EXPECT_EQ(batch.status, 1);
    EXPECT_TRUE(batch.output.startsWith(text("Canon_40D.jpg\nAperture Value  "))) << batch.output.toStdString();
    const QStringList sentences{text("/gone.jpg: The file could not be found. It may have been moved or deleted."),
                                text("/notes.txt: Not supported format"),
                                text("/random.png: The file could not be read. It may be damaged."),
                                text("/empty.jpg: This file is empty."), text(": This is a folder, not a picture.")};
    const QStringList lines = batch.errors.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), sentences.size()) << batch.errors.toStdString();
    for (qsizetype index = 0; index < lines.size(); ++index) {
        EXPECT_TRUE(lines[index].endsWith(sentences[index])) << lines[index].toStdString();
    }
    const BatchRun json = run({text("metadata"), text("--json"), text("gone.jpg")});
    EXPECT_EQ(json.status, 1);
    ASSERT_EQ(json.rows().size(), 1);
    EXPECT_FALSE(json.rows().front()[text("error")].isNull());
}

}  // namespace
}  // namespace sorvik
