// The real program compressing real pictures.

#include <QDir>

#include "batch_run.h"
#include "pictures.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

class Compress : public BatchTest {};

/// Frames or pages, by another program's reading.
QString pagesOf(const QString& path) {
    if (path.endsWith(text(".pdf"))) {
        return toolOutput(text("/usr/bin/gs"), {text("-q"), text("-dNODISPLAY"), text("-dNOSAFER"), text("-c"),
                                                text("(%1) (r) file runpdfbegin pdfpagecount = quit").arg(path)});
    }
    return toolOutput(text("/usr/bin/identify"), {text("-format"), text("%n "), path}).section(u' ', 0, 0);
}

class EveryRecipe : public BatchTest, public testing::WithParamInterface<const char*> {};

TEST_P(EveryRecipe, KeepsEverySampleThePictureThatItIs) {
    const QString kind = text(GetParam());
    const QStringList damaged{text("truncated_jpeg.jpg"), text("testimgl.jpg")};
    const QDir samples(text(SORVIK_TEST_DATA "/") + kind);
    QStringList sources;
    for (const QString& name : samples.entryList(QDir::Files)) {
        if (!name.endsWith(text(".avifs"))) {
            sources << bring(kind + u'/' + name);
        }
    }
    const BatchRun batch =
        run(QStringList{text("compress"), text("--json"), text("--compression-suffix"), text("_c")} + sources);
    for (const QString& source : sources) {
        const QString name = QFileInfo(source).fileName();
        const QString output = batch.row(name)[text("outputPath")].toString();
        SCOPED_TRACE(name.toStdString());
        if (damaged.contains(name)) {
            EXPECT_EQ(batch.error(name),
                      text("Compression failed: This file format is not supported or the file may be "
                           "corrupted."));
            continue;
        }
        EXPECT_EQ(batch.error(name), QString());
        EXPECT_EQ(pagesOf(output), pagesOf(source));
        if (kind != text("pdf")) {
            EXPECT_EQ(sizeOf(output), sizeOf(source));
            EXPECT_GE(likeness(output + text("[0]"), source + text("[0]")), kind == text("png") ? 200 : 30);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryRecipe, testing::Values("avif", "gif", "jpeg", "pdf", "png", "tiff", "webp"),
                         [](const auto& kind) { return std::string(kind.param); });

TEST_F(Compress, KeepsAPictureUprightAndInItsColors) {
    bring(text("jpeg/orientation/Landscape_6.jpg"), text("a.jpg"));
    bring(text("jpeg/Canon_40D.jpg"), text("b.jpg"));
    ASSERT_EQ(run({text("compress"), text("--compression-suffix"), text("_c"), text("a.jpg"), text("b.jpg")}).status,
              0);
    const auto tag = [&](const char* option, const char* name) {
        return toolOutput(text("/usr/bin/exiftool"), {text("-n"), text("-s3"), text(option), path(text(name))});
    };
    EXPECT_EQ(tag("-Orientation", "a_c.jpg"), text("6"));
    EXPECT_EQ(tag("-ExifIFD:all", "a_c.jpg"), QString()) << "and nothing else of it";
    EXPECT_EQ(tag("-EXIF:all", "b_c.jpg"), QString()) << "what lies upright keeps nothing";
}

TEST_F(Compress, LeavesAnOriginalThatWouldLoseSomething) {
    // Frames that the tool would drop, coded data that are overwritten, a document's attachment.
    bring(text("avif/star.avifs"), text("moving.avif"));
    bring(text("pdf/optipng.man.pdf"), text("plain.pdf"));
    QFile photo(bring(text("jpeg/iptc.jpg"), text("damaged.jpg")));
    ASSERT_TRUE(photo.open(QIODevice::ReadWrite));
    photo.seek(photo.size() / 2);
    photo.write(QByteArray(64, '\xFE'));
    photo.close();
    write(text("more.ps"),
          "[ /_objdef {s} /type /stream /OBJ pdfmark [ {s} (attached) /PUT pdfmark [ {s} << /Type "
          "/EmbeddedFile >> /PUT pdfmark [ /Name (a) /FS << /Type /Filespec /F (a) /EF << /F {s} >> "
          ">> /EMBED pdfmark");
    ASSERT_EQ(QProcess::execute(text("/usr/bin/gs"),
                                {text("-q"), text("-dBATCH"), text("-dNOPAUSE"), text("-sDEVICE=pdfwrite"), text("-o"),
                                 path(text("laden.pdf")), path(text("plain.pdf")), path(text("more.ps"))}),
              0);
    const QStringList files{text("moving.avif"), text("damaged.jpg"), text("laden.pdf")};
    QMap<QString, QByteArray> before;
    const auto content = [&](const QString& name) {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    for (const QString& name : files) {
        before[name] = content(name);
    }
    const BatchRun batch = run(QStringList{text("compress"), text("--json")} + files);
    EXPECT_EQ(batch.error(text("moving.avif")),
              text("Compression failed: This picture is animated, and compressing it would lose its frames."));
    EXPECT_EQ(batch.error(text("damaged.jpg")), text("Compression failed: The conversion failed. Please ensure the "
                                                     "file is not corrupted and try again."));
    EXPECT_EQ(batch.error(text("laden.pdf")),
              text("Compression failed: Compressing would take forms, attachments, layers or protection from the "
                   "original. Please set a prefix or a suffix."));
    for (const QString& name : files) {
        EXPECT_EQ(content(name), before[name]) << name.toStdString();
    }
}

TEST_F(Compress, KeepsTheTimesOfAnAnimation) {
    const QString source = bring(text("webp/rotating-squares.webp"), text("a.webp"));
    ASSERT_EQ(run({text("compress"), text("--compression-suffix"), text("_c"), source}).status, 0);
    const auto times = [](const QString& file) {
        return toolOutput(text("/usr/bin/vipsheader"), {text("-f"), text("delay"), file + text("[n=-1]")});
    };
    EXPECT_FALSE(times(source).isEmpty());
    EXPECT_EQ(times(path(text("a_c.webp"))), times(source));
}

TEST_F(Compress, AJpegOfLowQualityDoesNotGrow) {
    const QString source = bring(text("jpeg/DSCN0010.jpg"), text("a.jpg"));
    ASSERT_EQ(QProcess::execute(text("/usr/bin/convert"), {source, text("-quality"), text("40"), source}), 0);
    const BatchRun batch = run({text("compress"), text("--json"), text("--compression-suffix"), text("_c"), source});
    EXPECT_LE(batch.row(text("a.jpg"))[text("outputSize")].toInteger(), QFileInfo(source).size());
    EXPECT_GT(likeness(path(text("a_c.jpg")), source), 200) << "without loss";
}

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
