// The whole road, with the real program and the real tools.

#include <sys/stat.h>
#include <unistd.h>

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <csignal>
#include <limits>

#include "batch_run.h"
#include "core/vocabulary/failure_messages.h"
#include "core/vocabulary/formats.h"
#include "core/vocabulary/path_names.h"
#include "core/vocabulary/refusals.h"
#include "pictures.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

QString failure(const QString& sentence) { return text("Processing failed: ") + sentence; }

/// Samples that nothing here can read, or that were cut off.
constexpr std::array negatives{"truncated_jpeg.jpg", "testimgl.jpg", "indexed.psd", "iphone.heic"};

/// Pictures of several megapixels, left out where an encoder takes seconds for them.
constexpr std::array large{"jolla.jpg", "IMG_5195.HEIC", "g4-multi.tiff", "icc_profile_big.jpg"};

template <typename Names>
bool contains(const Names& names, const QString& name) {
    return std::ranges::any_of(names, [&](const char* each) { return name == text(each); });
}

QStringList samples(const char* kind) {
    QStringList found;
    const QDir kindFolder(QStringLiteral(SORVIK_TEST_DATA "/") + text(kind));
    for (const QString& name : kindFolder.entryList(QDir::Files, QDir::Name)) {
        if (detectInputFormat(pathExtension(name))) {
            found << text(kind) + u'/' + name;
        }
    }
    for (const QString& name : QDir(kindFolder.filePath(text("orientation"))).entryList(QDir::Files, QDir::Name)) {
        found << text(kind) + text("/orientation/") + name;
    }
    return found;
}

/// The size that all results of a source must have, by another program's reading or by hand.
QString expectedSize(const QString& source) {
    // Drawings at 96 dots an inch where they have a unit, pages at 300; icons by their largest frame.
    static const QMap<QString, QString> known{
        {text("circle.svg"), text("8 8")},
        {text("gopher.svg"), text("402 559")},
        {text("logo.svg"), text("736 552")},
        {text("blankpage.svg"), text("794 1123")},
        {text("optipng.man.pdf"), text("2479 3508")},
        {text("ISO_12233-reschart.pdf"), text("4724 2835")},
        {text("pillow.ico"), text("256 256")},
        {text("favicon.ico"), text("48 48")},
        {text("hopper_256x256.ico"), text("256 256")},
        {text("black_and_white.ico"), text("16 16")},
    };
    const QString name = fileName(source).toString();
    if (name.startsWith(text("Landscape_"))) {
        return text("600 450");
    }
    return known.contains(name) ? known[name] : sizeOf(source);
}

class EveryOffer : public BatchTest, public testing::WithParamInterface<const char*> {};

TEST_P(EveryOffer, ConvertsEverySampleToAPictureOfItsSize) {
    QStringList sources;
    for (const QString& sample : samples(GetParam())) {
        sources << bring(sample);
    }
    ASSERT_FALSE(sources.isEmpty());
    QMap<QString, QString> sizes;
    const auto input = detectInputFormat(pathExtension(sources.front()));
    std::vector<ImageFormat> targets(supportedOutputFormats(*input).begin(), supportedOutputFormats(*input).end());
    std::ranges::stable_partition(targets, [](ImageFormat format) { return format == ImageFormat::png; });
    for (const ImageFormat target : targets) {
        const bool slow = target == ImageFormat::avif || target == ImageFormat::heic || target == ImageFormat::webp ||
                          target == ImageFormat::gif;
        QStringList files = sources;
        files.removeIf([&](const QString& file) { return slow && contains(large, fileName(file).toString()); });
        const BatchRun batch =
            convert(rawValue(target).toLower(), QStringList{text("--output-suffix"), text("_out")} + files);
        for (const QString& file : files) {
            const QString name = fileName(file).toString();
            const QJsonObject row = batch.row(name);
            const std::string what = (name + text(" to ") + rawValue(target)).toStdString();
            const QString output = row[text("outputPath")].toString();
            if (contains(negatives, name)) {
                EXPECT_EQ(row[text("error")].toString(), failure(userMessage(QString()))) << what;
                EXPECT_TRUE(output.isEmpty()) << what;
                continue;
            }
            EXPECT_EQ(row[text("error")].toString(), QString()) << what;
            EXPECT_EQ(row[text("outputSize")].toInteger(), QFileInfo(output).size()) << what;
            // An icon becomes sixteen to forty-eight pixels; other programs go by the name of an icon's SVG.
            if (target == ImageFormat::ico || (input == InputFormat::ico && target == ImageFormat::svg) ||
                (input == InputFormat::ico && target == ImageFormat::pdf)) {
                continue;
            }
            const QString size = sizeOf(output);
            EXPECT_FALSE(size.isEmpty()) << what;
            if (!sizes.contains(name)) {
                sizes[name] = expectedSize(file);
            }
            EXPECT_EQ(size, sizes[name]) << what;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryOffer,
                         testing::Values("avif", "bmp", "gif", "heic", "ico", "jpeg", "pdf", "png", "psd", "svg",
                                         "tiff", "webp"),
                         [](const auto& kind) { return std::string(kind.param); });

class Convert : public BatchTest {};

TEST_F(Convert, KeepsThePixelsOfLosslessTargetsAndTheLikenessOfOthers) {
    const QStringList sources{bring(text("jpeg/DSCN0010.jpg")), bring(text("jpeg/hopper_gray.jpg"))};
    for (const char* target : {"png", "tiff", "bmp", "jpeg", "webp", "heic", "avif"}) {
        const BatchRun batch = convert(text(target), QStringList{text("--output-suffix"), text("_out")} + sources);
        for (const QString& source : sources) {
            const QString output = batch.row(fileName(source).toString())[text("outputPath")].toString();
            const bool lossless = QStringList{text("png"), text("tiff"), text("bmp")}.contains(text(target));
            const double decibels = likeness(output, source);
            EXPECT_GE(decibels, lossless ? 90 : 30) << output.toStdString();
        }
    }
}

TEST_F(Convert, BringsTheEightOrientationsOutAlike) {
    QStringList sources;
    for (int turn = 1; turn <= 8; ++turn) {
        sources << bring(text("jpeg/orientation/Landscape_%1.jpg").arg(turn));
    }
    for (const char* target : {"png", "webp", "heic"}) {
        const BatchRun batch = convert(text(target), sources);
        ASSERT_EQ(batch.status, 0) << batch.output.toStdString();
        const auto result = [&](int turn) { return path(text("Landscape_%1.%2").arg(turn).arg(text(target))); };
        for (int turn = 1; turn <= 8; ++turn) {
            EXPECT_EQ(sizeOf(result(turn)), text("600 450"));
            // The files bear their number and were compressed one by one: alike, not equal. A turn too many
            // gives less than 12 dB.
            EXPECT_GE(likeness(result(turn), result(3)), 15) << target << ' ' << turn;
            const QString tag =
                toolOutput(text("/usr/bin/identify"), {text("-format"), text("%[EXIF:Orientation]"), result(turn)});
            EXPECT_TRUE(tag.isEmpty() || tag == text("1")) << tag.toStdString();
        }
    }
}

TEST_F(Convert, TakesNamesAsTheyAre) {
    QStringList sources;
    for (const char* name : {"ph[1].png", "star*.png", "who?.png", "{a,b}.png", "50%d.png", "%[fx:1].png", "-dash.png",
                             "png:colon.png", "two\nlines.png", "qu'o\"te.png", "@list.png", "~.png", "|ls.png",
                             "$(x)`y`.png", "back\\slash.png", " blank .png", "grün.png"}) {
        sources << bring(text("png/tbgn2c16.png"), text(name));
    }
    // What the patterns above would match, were they patterns.
    write(text("ph1.png"), "not read");
    write(text("starry.png"), "not read");
    sources << bring(text("png/tbgn2c16.png"), QString(246, u'n') + text(".png"));
    for (const char* target : {"jpeg", "webp", "avif"}) {
        const BatchRun batch = convert(text(target), QStringList{text("--")} + sources);
        EXPECT_EQ(batch.status, 0) << batch.output.toStdString();
        ASSERT_EQ(static_cast<qsizetype>(batch.rows().size()), sources.size());
        for (const QJsonObject& row : batch.rows()) {
            EXPECT_GT(QFileInfo(row[text("outputPath")].toString()).size(), 100) << batch.output.toStdString();
        }
    }
    EXPECT_EQ(filesLeft().size(), sources.size() * 4 + 2) << filesLeft().join(u'\n').toStdString();
}

TEST_F(Convert, SaysWhatStandsInTheWayOfARow) {
    bring(text("jpeg/Canon_40D.jpg"), text("good.jpg"));
    QDir(folder.path()).mkdir(text("folder.jpg"));
    QDir(folder.path()).mkdir(text("taken.png"));
    bring(text("jpeg/Canon_40D.jpg"), text("taken.jpg"));
    ASSERT_EQ(mkfifo(path(text("pipe.jpg")).toLocal8Bit().constData(), 0600), 0);
    QFile::link(text("/dev/zero"), path(text("zero.jpg")));
    QFile::link(path(text("nowhere")), path(text("dangling.jpg")));
    QFile::link(path(text("good.jpg")), path(text("link.jpg")));
    write(text("empty.jpg"), "");
    write(text("junk.jpg"), QByteArray(1000, 'j'));
    write(text("bomb.gif"),
          QByteArray::fromHex("4749463839617fffffff800000ffffff0000002c00000000ffffffff0002024401003b"));
    bring(text("jpeg/Canon_40D.jpg"), QString(251, u'n') + text(".jpg"));
    const BatchRun longName =
        convert(text("tiff"), {text("--output-suffix"), text("-x"), QString(251, u'n') + text(".jpg")});
    EXPECT_EQ(longName.rows().front()[text("error")].toString(), failure(sentence(Refusal::outputNameTooLong)));

    const BatchRun batch =
        convert(text("png"), {text("good.jpg"), text("folder.jpg"), text("taken.jpg"), text("pipe.jpg"),
                              text("zero.jpg"), text("dangling.jpg"), text("link.jpg"), text("empty.jpg"),
                              text("junk.jpg"), text("gone.jpg"), text("notes.txt"), text("bomb.gif")});
    EXPECT_EQ(batch.status, 1);
    EXPECT_EQ(batch.error(text("good.jpg")), QString());
    EXPECT_EQ(batch.error(text("link.jpg")), QString());
    EXPECT_EQ(batch.error(text("folder.jpg")), failure(sentence(Refusal::folder)));
    EXPECT_EQ(batch.error(text("taken.jpg")), failure(sentence(Refusal::outputNotAFile)));
    EXPECT_EQ(batch.error(text("pipe.jpg")), failure(sentence(Refusal::namedPipe)));
    EXPECT_EQ(batch.error(text("zero.jpg")), failure(sentence(Refusal::device)));
    EXPECT_EQ(batch.error(text("dangling.jpg")), failure(sentence(Refusal::danglingLink)));
    EXPECT_EQ(batch.error(text("empty.jpg")), failure(sentence(Refusal::emptyFile)));
    EXPECT_EQ(batch.error(text("junk.jpg")), failure(userMessage(QString())));
    EXPECT_EQ(batch.error(text("gone.jpg")), failure(userMessage(text("no such file or directory"))));
    EXPECT_EQ(batch.error(text("notes.txt")), text("Skipped: Invalid input format"));
    EXPECT_EQ(batch.error(text("bomb.gif")), failure(sentence(Refusal::tooLarge)));
    EXPECT_FALSE(QFile::exists(path(text("junk.png"))));

    write(text("wide.svg"), "<svg xmlns='http://www.w3.org/2000/svg' width='16001' height='2'/>");
    EXPECT_EQ(convert(text("avif"), {text("wide.svg")}).error(text("wide.svg")), failure(sentence(Refusal::tooLarge)));
}

TEST_F(Convert, LeavesOriginalsAloneWhenTheDiskIsFull) {
    if (getuid() != 0) {
        GTEST_SKIP() << "mounting a small disk takes root";
    }
    const QString disk = path(text("disk"));
    QDir().mkdir(disk);
    if (QProcess::execute(text("mount"),
                          {text("-t"), text("tmpfs"), text("-o"), text("size=400k"), text("none"), disk}) != 0) {
        GTEST_SKIP() << "no mounting here";
    }
    bring(text("jpeg/DSCN0010.jpg"), text("disk/photo.jpg"));
    write(text("disk/photo.bmp"), "what stood there");
    const BatchRun full = convert(text("bmp"), {disk + text("/photo.jpg")});
    EXPECT_EQ(full.error(text("photo.jpg")), failure(userMessage(text("No space left on device"))));
    QFile old(disk + text("/photo.bmp"));
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "what stood there");
    old.close();
    EXPECT_EQ(QDir(disk).entryList(QDir::Files | QDir::Hidden).size(), 2);

    // The same with the temporary directory on the full disk, through every kind of route.
    bring(text("jpeg/DSCN0010.jpg"), text("photo.jpg"));
    QProcessEnvironment environment;
    environment.insert(text("TMPDIR"), disk);
    for (const char* target : {"bmp", "png", "webp", "avif", "tiff", "heic"}) {
        const BatchRun run = this->run(
            {text("convert"), text("--json"), text("--to"), text(target), path(text("photo.jpg"))}, environment);
        if (run.status != 0) {
            EXPECT_EQ(run.error(text("photo.jpg")), failure(userMessage(text("No space left on device")))) << target;
        }
        EXPECT_EQ(QDir(disk).entryList(QDir::Files | QDir::Hidden).size(), 2) << target;
    }
    QProcess::execute(text("umount"), {disk});
}

TEST_F(Convert, PrintsRowsForPeopleWithTheSummaryLast) {
    bring(text("png/tbgn2c16.png"), text("a.png"));
    const BatchRun batch = run({text("convert"), text("--to"), text("gif"), text("a.png"), text("notes.txt")});
    EXPECT_EQ(batch.status, 1);
    const QStringList lines = batch.output.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines.contains(text("notes.txt  -     -     Skipped: Invalid input format")));
    EXPECT_TRUE(lines.filter(text("a.png      PNG   GIF   done  ")).size() == 1) << batch.output.toStdString();
    EXPECT_EQ(lines.back(), text("Conversion complete. 1 succeeded, 1 failed. Check status column for details."));
    EXPECT_EQ(batch.errors, QString()) << "silent without --verbose";

    const BatchRun verbose = run({text("convert"), text("--verbose"), text("--to"), text("gif"), text("a.png")});
    EXPECT_EQ(verbose.status, 0);
    EXPECT_TRUE(verbose.errors.contains(text("[Image Conversion] convert_file_png_to_gif: ")));
    EXPECT_TRUE(verbose.errors.contains(text("[Batch Processing] batch_conversion: "))) << verbose.errors.toStdString();

    EXPECT_EQ(run({text("convert"), text("--to"), text("nothing"), text("a.png")}).status, 2);

    QProcess full;
    full.setStandardOutputFile(text("/dev/full"));
    full.start(QStringLiteral(SORVIKBATCH), {text("convert"), text("--to"), text("gif"), path(text("a.png"))});
    ASSERT_TRUE(full.waitForFinished(60000));
    EXPECT_EQ(full.exitCode(), 1) << "rows that nobody can read are no success";
}

TEST_F(Convert, EndsCleanlyWhenInterrupted) {
    QStringList sources;
    for (int number = 0; number < 40; ++number) {
        sources << bring(text("jpeg/DSCN0010.jpg"), text("f%1.jpg").arg(number));
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(text("TMPDIR"), temporary.path());
    process.setProcessEnvironment(environment);
    // A group of its own, so that the signal reaches what a terminal's would: the program and all it started.
    process.setChildProcessModifier([] { setpgid(0, 0); });
    process.start(QStringLiteral(SORVIKBATCH), QStringList{text("convert"), text("--to"), text("webp")} + sources);
    ASSERT_TRUE(process.waitForReadyRead(60000));
    ASSERT_EQ(kill(-static_cast<pid_t>(process.processId()), SIGINT), 0);
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 1);
    const QString rows = QString::fromUtf8(process.readAllStandardOutput());
    EXPECT_TRUE(rows.endsWith(text("Processing cancelled.\n")));
    EXPECT_FALSE(rows.contains(text("failed"))) << "what was in flight is finished\n" << rows.toStdString();
    EXPECT_TRUE(QDir(temporary.path()).isEmpty());
    EXPECT_LT(filesLeft().size(), 80);
}

}  // namespace
}  // namespace sorvik
