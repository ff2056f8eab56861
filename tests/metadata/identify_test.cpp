// Runs of identify: the real one on real pictures, and false ones where a failure has to be forced.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include "metadata/metadata_utilities.h"
#include "metadata/verbose_texts.h"
#include "platform/log.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

/// A bundle whose magick is a shell script, and a file to look at. Each run leaves a line in a list.
class ScriptedMagick : public testing::Test {
protected:
    ScriptedMagick() {
        setLogSink([this](const QString& line) { log << line; });
        QDir(folder.path()).mkpath(text("Contents/Resources"));
        write(picture(), "picture");
    }
    ~ScriptedMagick() override { setLogSink({}); }

    void script(const QByteArray& body) const {
        write(magick(), "#!/bin/sh\necho \"$@\" >> \"" + runsPath().toUtf8() + "\"\n" + body + '\n');
        chmod(QFile::encodeName(magick()).constData(), 0755);
    }
    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QString magick() const { return folder.filePath(text("Contents/Resources/magick")); }
    [[nodiscard]] QString picture() const { return folder.filePath(text("a.jpg")); }
    [[nodiscard]] QString runsPath() const { return folder.filePath(text("runs")); }
    [[nodiscard]] QStringList runs() const {
        QFile file(runsPath());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                              : QStringList();
    }

    QStringList log;
    QTemporaryDir folder;
    ProcessConfigCache tools{Bundle(folder.path())};
    VerboseTexts texts{tools};
};

TEST_F(ScriptedMagick, RunsOncePerPath) {
    script("echo 'exif:Make: x'; echo noise >&2");
    EXPECT_EQ(texts.text(picture()), text("exif:Make: x\n"));
    write(picture(), "other content");
    EXPECT_EQ(texts.text(picture()), text("exif:Make: x\n"));
    EXPECT_EQ(runs(), QStringList{text("identify -verbose ") + picture()});
    EXPECT_EQ(log, QStringList());

    QFile::remove(picture());
    EXPECT_EQ(texts.text(picture()), std::nullopt) << "what was known of a file that is gone";
}

TEST_F(ScriptedMagick, FailuresAreTriedAgain) {
    script("echo 'exif:Make: x'; exit 1");
    EXPECT_EQ(texts.text(picture()), std::nullopt);
    script("echo 'exif:Make: x'; kill -9 $$");
    EXPECT_EQ(texts.text(picture()), std::nullopt);
    EXPECT_EQ(log, QStringList());
    script("echo 'exif:Make: x'");
    EXPECT_EQ(texts.text(picture()), text("exif:Make: x\n"));
    EXPECT_EQ(runs().size(), 3);
}

TEST_F(ScriptedMagick, SaysWhyNothingCouldRun) {
    EXPECT_EQ(texts.text(picture()), std::nullopt);
    write(magick(), "not executable");
    EXPECT_EQ(texts.text(picture()), std::nullopt);
    const QString fifo = folder.filePath(text("fifo.jpg"));
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0644), 0);
    const QString gone = folder.filePath(text("gone.jpg"));
    EXPECT_EQ(texts.text(fifo), std::nullopt);
    EXPECT_EQ(texts.text(gone), std::nullopt);
    EXPECT_EQ(texts.text(folder.path()), std::nullopt);
    const QString unreadable = text("MetadataUtilities: File not found or not readable at ");
    EXPECT_EQ(log, (QStringList{text("MetadataUtilities: ImageMagick not found in expected location."),
                                text("MetadataUtilities: Failed to run magick identify for ") + picture() +
                                    text(": Permission denied"),
                                unreadable + fifo, unreadable + gone, unreadable + folder.path()}));
}

TEST_F(ScriptedMagick, TextThatIsNotUtf8IsEmptyAndKept) {
    script("printf 'exif:Make: x\\n\\377\\n'");
    EXPECT_EQ(texts.text(picture()), QString());
    script("printf 'exif:Make: x'");
    EXPECT_EQ(texts.text(picture()), QString());
    EXPECT_EQ(runs().size(), 1);
}

TEST_F(ScriptedMagick, LongTextIsWhole) {
    script("echo 'exif:Make: x'; yes 'a line of nothing much' | head -c 3000000; echo; echo 'exif:Model: y'");
    const QString whole = texts.text(picture()).value_or(QString());
    EXPECT_TRUE(whole.startsWith(text("exif:Make: x\n")));
    EXPECT_TRUE(whole.endsWith(text("\nexif:Model: y\n")));
    EXPECT_GT(whole.size(), 3000000);

    const QString endless = folder.filePath(text("b.jpg"));
    write(endless, "picture");
    script("echo 'exif:Make: x'; yes '\u00e4\u00e4\u00e4\u00e4' | head -c 30000001");
    const QString cut = texts.text(endless).value_or(QString());
    EXPECT_TRUE(cut.startsWith(text("exif:Make: x\n")));
    EXPECT_TRUE(cut.endsWith(text("\u00e4\u00e4\u00e4\u00e4\n")));
}

TEST_F(ScriptedMagick, PatternsReachTheToolUnderAnotherName) {
    const QString odd = folder.filePath(text("ph[1]*.jpg"));
    write(odd, "picture");
    script("cat \"$3\"");
    EXPECT_EQ(texts.text(odd), text("picture"));
    ASSERT_EQ(runs().size(), 1);
    EXPECT_FALSE(runs().front().contains(u'['));
    EXPECT_EQ(texts.text(odd), text("picture"));
    EXPECT_EQ(runs().size(), 1) << "the name that was given is the key";
}

TEST(IdentifyEnvironment, NamesTheToolsFolders) {
    struct Row {
        Environment inherited;
        const char* path;
        const char* libraries;
    };
    for (const Row& row : {
             Row{{}, "/t", "/l"},
             Row{{{text("PATH"), text("/bin:/usr/bin")}, {text("LD_LIBRARY_PATH"), text("/x")}},
                 "/t:/bin:/usr/bin",
                 "/l:/x"},
             Row{{{text("PATH"), text("/bin:/t")}, {text("LD_LIBRARY_PATH"), text("/l")}}, "/t", "/l:/l"},
             Row{{{text("PATH"), text("/bin:/tools")}}, "/t", "/l"},
         }) {
        Environment expected = row.inherited;
        expected[text("PATH")] = text(row.path);
        expected[text("LD_LIBRARY_PATH")] = text(row.libraries);
        EXPECT_EQ(identifyEnvironment(row.inherited, text("/t"), text("/l")), expected);
    }
}

/// What the bundle's own identify prints; empty when it fails.
QString identified(const QString& file) {
    ChildSetup setup;
    setup.executable = ProcessConfigCache::shared().resolveMagickPath().value_or(QString());
    setup.arguments = {text("identify"), text("-verbose"), file};
    setup.output = ChildSetup::Output::document;
    const ChildResult result = runChild(setup);
    return result.succeeded() ? QString::fromUtf8(result.output) : QString();
}

/// The last value of a property in such a text, in a frame; empty when there is none.
QString framedValue(const QString& verboseText, const char* property, const char* frame) {
    const QRegularExpression line(text("^ *%1: +(\\S.*?) *$").arg(text(property)), QRegularExpression::MultilineOption);
    QString value;
    for (auto matches = line.globalMatch(verboseText); matches.hasNext();) {
        value = text(frame).arg(matches.next().captured(1));
    }
    return value;
}

TEST(MetadataUtilities, AgreesWithTheToolOnRealPictures) {
    setLogSink({});
    struct Property {
        const char* name;
        const char* label;
        const char* frame;  // round the value
    };
    for (const char* sample :
         {"jpeg/DSCN0010.jpg", "jpeg/Canon_40D.jpg", "heic/IMG_5195.HEIC", "webp/1.webp", "raw/sample.nef"}) {
        const QString file = text(SORVIK_TEST_DATA "/") + text(sample);
        ASSERT_TRUE(QFile::exists(file)) << sample;
        const QString verboseText = identified(file);
        const auto table = MetadataUtilities::readMetadata(QUrl::fromLocalFile(file));
        for (const Property& property : {
                 Property{"exif:Make", "Camera Make", "%1"},
                 Property{"exif:Model", "Camera Model", "%1"},
                 Property{"exif:DateTimeOriginal", "Date Taken", "%1"},
                 Property{"exif:FNumber", "F-Number", "f/%1"},
                 Property{"exif:ExposureTime", "Exposure Time", "%1s"},
                 Property{"exif:FocalLengthIn35mmFilm", "35mm Focal Length", "%1mm"},
                 Property{"exif:GPSLatitude", "GPS Latitude", "%1"},
                 Property{"exif:GPSTimeStamp", "GPS Time", "%1"},
                 Property{"Profile-exif", "EXIF Profile", "%1"},
                 Property{"icc:description", "Color Profile", "%1"},
             }) {
            EXPECT_EQ(table.value(text(property.label)), framedValue(verboseText, property.name, property.frame))
                << sample << ' ' << property.name;
        }
        EXPECT_EQ(MetadataUtilities::hasMetadata(QUrl::fromLocalFile(file)), !table.isEmpty()) << sample;
    }
    const auto table =
        MetadataUtilities::readMetadata(QUrl::fromLocalFile(text(SORVIK_TEST_DATA "/jpeg/DSCN0010.jpg")));
    EXPECT_EQ(table.value(text("Camera Make")), text("NIKON"));
    EXPECT_EQ(table.value(text("Flash")), text("No Flash, Compulsory"));
    EXPECT_EQ(table.value(text("35mm Focal Length")), text("112mm"));
    EXPECT_FALSE(MetadataUtilities::hasMetadata(QUrl(text("https://example.org/a.jpg"))));
}

}  // namespace
}  // namespace sorvik
