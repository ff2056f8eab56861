// The real program compressing real pictures.

#include "batch_run.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

class Compress : public BatchTest {};

TEST_F(Compress, RefusesWhatItCannotTake) {
    bring(text("heic/rgb.heif"));
    write(text("notes.txt"), "no picture");
    const BatchRun batch = run({text("compress"), text("rgb.heif"), text("notes.txt")});
    EXPECT_EQ(batch.status, 1);
    EXPECT_EQ(batch.output, text("rgb.heif   HEIC  -     Not supported for compression\n"
                                 "notes.txt  -     -     Not supported format\n"));
    EXPECT_EQ(filesLeft(), (QStringList{text("notes.txt"), text("rgb.heif")}));

    const BatchRun json = run({text("compress"), text("--json"), text("rgb.heif")});
    EXPECT_EQ(json.error(text("rgb.heif")), text("Not supported for compression"));
    EXPECT_EQ(json.row(text("rgb.heif"))[text("status")].toString(), text("failed"));
}

TEST_F(Compress, MakesPicturesSmallerBesideTheirSources) {
    bring(text("jpeg/jolla.jpg"), text("a.jpg"));
    bring(text("heic/rgb.heif"));
    const qint64 before = QFileInfo(path(text("a.jpg"))).size();
    const BatchRun batch = run({text("compress"), text("--json"), text("--jpeg-quality"), text("30"),
                                text("--compression-suffix"), text("_small"), text("a.jpg"), text("rgb.heif")});
    EXPECT_EQ(batch.status, 1) << "one row is refused";
    const QJsonObject row = batch.row(text("a.jpg"));
    EXPECT_EQ(row[text("outputPath")].toString(), path(text("a_small.jpg")));
    EXPECT_EQ(row[text("to")].toString(), text("JPEG"));
    const QFileInfo result(path(text("a_small.jpg")));
    EXPECT_EQ(row[text("outputSize")].toInteger(), result.size());
    EXPECT_GT(result.size(), 0);
    EXPECT_LT(result.size(), before / 2);
    EXPECT_EQ(QFileInfo(path(text("a.jpg"))).size(), before);

    const BatchRun inPlace = run({text("compress"), text("--jpeg-quality"), text("30"), text("a.jpg")});
    EXPECT_EQ(inPlace.status, 0);
    EXPECT_EQ(QFileInfo(path(text("a.jpg"))).size(), result.size());
    EXPECT_TRUE(inPlace.output.endsWith(text("%\nCompression complete. 1 file(s) succeeded.\n")))
        << inPlace.output.toStdString();
    EXPECT_EQ(filesLeft(), (QStringList{text("a.jpg"), text("a_small.jpg"), text("rgb.heif")}));
}

TEST_F(Compress, FollowsAConversionWhenAsked) {
    bring(text("png/sample16.png"), text("a.png"));
    const auto convert = [&](const QStringList& more) {
        return run(QStringList{text("convert"), text("--json"), text("--to"), text("jpeg")} + more +
                   QStringList{text("a.png")});
    };
    const BatchRun batch = convert({text("--compress"), text("--jpeg-quality"), text("20"), text("--output-prefix"),
                                    text("new-"), text("--compression-prefix"), text("small-")});
    EXPECT_EQ(batch.status, 0);
    const QJsonObject row = batch.row(text("a.png"));
    EXPECT_EQ(row[text("outputPath")].toString(), path(text("new-small-a.jpg")));
    EXPECT_LT(row[text("outputSize")].toInteger(), row[text("convertedSize")].toInteger());
    EXPECT_TRUE(row[text("saving")].toString().endsWith(u'%'));
    EXPECT_TRUE(convert({text("--jpeg-quality"), text("20")}).row(text("a.png"))[text("saving")].isNull());
}

}  // namespace
}  // namespace sorvik
