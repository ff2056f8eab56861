// The pass that rewrites a finished file without its metadata.

#include "engines/metadata_strip.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "engines/sips_converter.h"
#include "platform/files.h"
#include "platform/log.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

/// A file to strip, and a bundle whose `magick` is a script; an empty one leaves it out.
class StripTest : public testing::Test {
protected:
    void SetUp() override {
        setLogSink([this](const QString& line) { lines << line; });
        ASSERT_FALSE(writeAtomically(file(), "content"));
    }
    void TearDown() override {
        setLogSink({});
        EXPECT_EQ(leftovers(), QStringList());
    }

    [[nodiscard]] QString file() const { return folder.filePath(text("T.webp")); }
    [[nodiscard]] QByteArray content() const { return readFile(file()).value_or(QByteArray()); }
    [[nodiscard]] QByteArray log() const { return readFile(folder.filePath(text("log"))).value_or(QByteArray()); }

    [[nodiscard]] ProcessConfigCache tools(const char* magick) const {
        const QString resources = folder.filePath(text("Contents/Resources"));
        QDir().mkpath(resources);
        script(resources + text("/magick"), magick);
        return ProcessConfigCache(Bundle(folder.path()));
    }
    static void script(const QString& path, const char* body) {
        QFile::remove(path);
        if (*body != '\0') {
            EXPECT_FALSE(writeAtomically(path, QByteArray("#!/bin/sh\n") + body));
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }
    [[nodiscard]] static QStringList leftovers() {
        return QDir(QDir::tempPath()).entryList({text("sorvik_*_%1_*").arg(QCoreApplication::applicationPid())});
    }

    QTemporaryDir folder;
    QStringList lines;
};

TEST_F(StripTest, TheVectorsFollowTheTable) {
    const auto vector = [](const char* format) {
        return stripArguments(text("/f"), text(format), text("/t")).join(u' ');
    };
    EXPECT_EQ(vector("webp"), text("/f -strip /t"));
    EXPECT_EQ(vector("heic"), text("/f -strip /t"));
    EXPECT_EQ(vector("JPG"), text("/f -strip +profile * /t"));
    EXPECT_EQ(vector("tif"), text("/f -strip -define tiff:exif-properties=false -define tiff:ignore-tags=true "
                                  "+profile * /t"));
    EXPECT_EQ(vector("PNG"), text("/f -strip -define png:exclude-chunk=tIME -define png:exclude-chunk=tEXt "
                                  "-define png:exclude-chunk=zTXt -define png:exclude-chunk=iTXt /t"));
}

TEST_F(StripTest, TheEnvironmentIsItsOwn) {
    const auto path = [](const Environment& inherited) {
        return stripEnvironment(inherited, text("/b/R/magick"), text("/b/F"));
    };
    const Environment none = path({});
    EXPECT_EQ(none, (Environment{{text("PATH"), text("/b/R")}, {text("LD_LIBRARY_PATH"), text("/b/F")}}));
    const Environment joined =
        path({{text("PATH"), text("/bin")}, {text("LD_LIBRARY_PATH"), text("/l")}, {text("A"), {}}});
    EXPECT_EQ(
        joined,
        (Environment{{text("PATH"), text("/b/R:/bin")}, {text("LD_LIBRARY_PATH"), text("/b/F:/l")}, {text("A"), {}}}));
    EXPECT_EQ(path({{text("PATH"), text("/bin:/b/R2")}})[text("PATH")], text("/bin:/b/R2"))
        << "the folder's text is in it, and that counts";
}

constexpr const char* works = "for o; do :; done\necho stripped > \"$o\"\necho \"$# $3\" >> \"${0%/*}/../../log\"\n";

TEST_F(StripTest, TheContentIsReplacedOnSuccess) {
    auto cache = tools(works);
    for (const Replacer copy : {Replacer::imageConverter, Replacer::sipsConverter}) {
        ASSERT_FALSE(writeAtomically(file(), "content"));
        EXPECT_TRUE(stripMetadata(cache, file(), text("WebP"), copy));
        EXPECT_EQ(content(), "stripped\n");
    }
    const auto runs = log().split('\n');
    EXPECT_TRUE(runs[0].startsWith("3 ") && runs[0].contains("/sorvik_imageconverter_") && runs[0].endsWith(".WebP"));
    EXPECT_TRUE(runs[1].contains("/sorvik_sips_"));
    EXPECT_EQ(lines, QStringList());
    EXPECT_EQ(strippedBytes(cache, "bytes", text("webp")), "stripped\n");
}

TEST_F(StripTest, AFailureLeavesTheOriginal) {
    for (const char* broken : {"exit 1", "exit 0", "kill -9 $$", "for o; do :; done\necho half > \"$o\"\nexit 3"}) {
        auto cache = tools(broken);
        lines.clear();
        EXPECT_FALSE(stripMetadata(cache, file(), text("webp"), Replacer::imageConverter)) << broken;
        EXPECT_EQ(lines, QStringList());
        EXPECT_FALSE(stripMetadata(cache, file(), text("webp"), Replacer::sipsConverter));
        EXPECT_EQ(lines, QStringList{text("[SIPSConverter] ImageMagick process failed or temp file not created for ") +
                                     file()});
        EXPECT_EQ(content(), "content");
        EXPECT_EQ(strippedBytes(cache, "bytes", text("webp")), "bytes");
    }
    auto unstartable = tools("x");
    QFile::setPermissions(folder.filePath(text("Contents/Resources/magick")), QFile::ReadOwner);
    lines.clear();
    EXPECT_FALSE(stripMetadata(unstartable, file(), text("webp"), Replacer::imageConverter));
    EXPECT_EQ(lines, QStringList());
    EXPECT_FALSE(stripMetadata(unstartable, file(), text("webp"), Replacer::sipsConverter));
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith(text("[SIPSConverter] Error running ImageMagick for metadata strip: ")));
}

TEST_F(StripTest, WithoutMagickOnlyOneCopySpeaks) {
    auto cache = tools("");
    EXPECT_FALSE(stripMetadata(cache, file(), text("webp"), Replacer::imageConverter));
    EXPECT_EQ(lines, QStringList());
    EXPECT_FALSE(stripMetadata(cache, file(), text("webp"), Replacer::sipsConverter));
    EXPECT_EQ(lines, QStringList{text("[SIPSConverter] ImageMagick not found for metadata stripping.")});
    EXPECT_EQ(content(), "content");
}

TEST_F(StripTest, TheSystemToolFailsWithTheStrip) {
    auto cache = tools("exit 1");
    script(folder.filePath(text("Contents/Resources/sips")),
           "[ \"$4\" = -s ] || [ \"$3\" != jpeg ] || exit 1\nwhile [ \"$1\" != --out ]; do shift; done\necho x > "
           "\"$2\"\n");
    EXPECT_FALSE(convertWithSips(cache, file(), text("gif"), 0, true, true).success);
    EXPECT_EQ(lines.last(), text("[SIPSConverter] Failed to strip metadata from ") + folder.filePath(text("T.gif")));
    EXPECT_FALSE(convertWithSips(cache, file(), text("jpg"), 0, true, true).success);
    EXPECT_EQ(lines.last(),
              text("[SIPSConverter] Failed to strip metadata from %1 in fallback").arg(folder.filePath(text("T.jpg"))));
    script(folder.filePath(text("Contents/Resources/magick")), works);
    EXPECT_TRUE(convertWithSips(cache, file(), text("gif"), 0, true, true).success);
}

}  // namespace
}  // namespace sorvik
