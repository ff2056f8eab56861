// The vectors, compared whole, and one real run of each recipe.

#include <gtest/gtest.h>

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <limits>

#include "engines/image_converter.h"
#include "engines/image_io_converter.h"
#include "engines/image_magick_recipes.h"
#include "engines/image_signature.h"
#include "engines/result_cache.h"
#include "engines/sips_converter.h"
#include "platform/log.h"
#include "services/process_caches.h"

namespace sorvik {
namespace {

QStringList words(const char* line) { return QString::fromLatin1(line).split(u' ', Qt::SkipEmptyParts); }

QString data(const char* name) { return QStringLiteral(SORVIK_TEST_DATA "/") + QString::fromLatin1(name); }

TEST(QualityArguments, FollowTheTable) {
    setLogSink({});
    struct Row {
        const char* format;
        double quality;
        const char* arguments;
    };
    for (const Row& row : {
             Row{"jpg", 0.999, "-quality 99"},
             Row{"JPEG", 0.5, "-quality 50"},
             Row{"jpeg", 7, "-quality 100"},
             Row{"avif", 0.85, "-quality 85"},
             Row{"avif", -1, "-quality 0"},
             Row{"svg", 0.1, "-quality 100"},
             Row{"ico", 0.1, "-quality 100"},
             Row{"png", 0.5, "-define png:compression-level=4"},
             Row{"png", 1, "-define png:compression-level=9"},
             Row{"gif", 1, "-colors 16"},
             Row{"gif", 0.875, "-colors 24"},
             Row{"gif", 0.876, "-colors 16"},
             Row{"gif", 0.5, "-colors 96"},
             Row{"gif", 0, "-colors 256"},
             Row{"webp", 0.85, ""},
             Row{"tiff", 0.85, ""},
             Row{"tif", 0.85, ""},
             Row{"heic", 0.85, ""},
         }) {
        EXPECT_EQ(qualityArguments(QString::fromLatin1(row.format), row.quality), words(row.arguments))
            << row.format << ' ' << row.quality;
    }
}

TEST(MetadataArguments, FollowTheTable) {
    const QStringList tiff =
        words("-strip -define tiff:exif-properties=false -define tiff:ignore-tags=true +profile *");
    EXPECT_EQ(metadataArguments(QStringLiteral("png")),
              words("-strip -define png:exclude-chunk=tIME -define png:exclude-chunk=tEXt "
                    "-define png:exclude-chunk=zTXt -define png:exclude-chunk=iTXt"));
    EXPECT_EQ(metadataArguments(QStringLiteral("tiff")), tiff);
    EXPECT_EQ(metadataArguments(QStringLiteral("TIF")), tiff);
    EXPECT_EQ(metadataArguments(QStringLiteral("jpg")), words("-strip +profile *"));
    EXPECT_EQ(metadataArguments(QStringLiteral("webp")), words("-strip"));
}

TEST(GifColors, GrowWithTheLevel) {
    EXPECT_EQ(gifColors(0), 32);
    EXPECT_EQ(gifColors(1), 16);
    EXPECT_EQ(gifColors(9), 256);
    EXPECT_EQ(gifColors(std::numeric_limits<int>::max()), 256);
}

TEST(FileRecipes, BuildTheWholeVector) {
    EXPECT_EQ(fileRecipeArguments(QStringLiteral("/i.png"), QStringLiteral("webp"), 0.85, QStringLiteral("/o.webp")),
              words("/i.png /o.webp"));
    EXPECT_EQ(fileRecipeArguments(QStringLiteral("/i.png"), QStringLiteral("avif"), 0.85, QStringLiteral("/o.avif")),
              words("/i.png -quality 85 /o.avif"));
}

TEST(FileRecipes, RunForRealAndRefuseOtherExtensions) {
    setLogSink({});
    auto& tools = ProcessConfigCache::shared();
    const QTemporaryDir folder;
    const QString input = folder.filePath(QStringLiteral("ph[1].png"));
    ASSERT_TRUE(QFile::copy(data("png/tbgn2c16.png"), input));
    // A decoy that the pattern would match: were the name read as syntax, this text would be the picture.
    QFile decoy(folder.filePath(QStringLiteral("ph1.png")));
    ASSERT_TRUE(decoy.open(QIODevice::WriteOnly));
    decoy.write("no picture");
    decoy.close();
    const QString webp = folder.filePath(QStringLiteral("100%d.webp"));
    EXPECT_TRUE(convertWebPFile(tools, input, webp, 0.85));
    clearSignatureCache();
    EXPECT_TRUE(isValidImageFile(webp, ImageFormat::webp));
    EXPECT_TRUE(convertAVIFFile(tools, input, folder.filePath(QStringLiteral("a.avif")), 0.85));
    EXPECT_FALSE(convertWebPFile(tools, input, folder.filePath(QStringLiteral("a.png")), 0.85));
    EXPECT_FALSE(convertWebPFile(tools, folder.filePath(QStringLiteral("gone.png")), webp, 0.85));
}

TEST(SipsArguments, FollowTheTable) {
    const auto vector = [](const char* format, double quality, bool lossless) {
        return sipsArguments(QStringLiteral("/i"), sipsFormat(QString::fromLatin1(format)), quality, lossless,
                             QStringLiteral("/o"));
    };
    EXPECT_EQ(vector("JPEG", 0, true), words("-s format jpeg /i --out /o"));
    EXPECT_EQ(vector("TIF", 0, true), words("-s format tiff /i --out /o"));
    EXPECT_EQ(vector("jpg", 0.857, false), words("-s format jpeg -s formatOptions 85 /i --out /o"));
    EXPECT_EQ(vector("png", 0.0, false), words("-s format png -s optimize 9 /i --out /o"));
    EXPECT_EQ(vector("png", 0.95, false), words("-s format png -s optimize 0 /i --out /o"));
    EXPECT_EQ(vector("gif", 0.5, false), words("-s format gif /i --out /o"));
    EXPECT_EQ(sipsFallbackArguments(QStringLiteral("/i"), QStringLiteral("/o")),
              words("-s format jpeg -s formatOptions 100 /i --out /o"));
    EXPECT_TRUE(isSipsFormat(QStringLiteral("EPS")));
    EXPECT_FALSE(isSipsFormat(QStringLiteral("psd")));
}

/// A bundle whose `sips` is a script: it writes its arguments to a log and, on its n-th run, an output.
class ScriptedSips {
public:
    explicit ScriptedSips(int succeedsAtRun) {
        const QString resources = folder_.filePath(QStringLiteral("Contents/Resources"));
        QDir().mkpath(resources);
        QFile script(resources + QStringLiteral("/sips"));
        EXPECT_TRUE(script.open(QIODevice::WriteOnly));
        script.write(QStringLiteral("#!/bin/sh\necho \"$@\" >> '%1'\n[ \"$(wc -l < '%1')\" = %2 ] || exit 1\n"
                                    "while [ \"$1\" != --out ]; do shift; done\necho x > \"$2\"\n")
                         .arg(log())
                         .arg(succeedsAtRun)
                         .toUtf8());
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    [[nodiscard]] ProcessConfigCache tools() const { return ProcessConfigCache(Bundle(folder_.path())); }
    [[nodiscard]] QString picture() const { return folder_.filePath(QStringLiteral("T.png")); }
    [[nodiscard]] QStringList runs() const {
        QFile file(log());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                              : QStringList();
    }

private:
    [[nodiscard]] QString log() const { return folder_.filePath(QStringLiteral("log")); }
    QTemporaryDir folder_;
};

TEST(ConvertWithSips, TriesAJpegTwiceAndOthersOnce) {
    setLogSink({});
    const ScriptedSips second(2);
    auto secondTools = second.tools();
    auto conversion = convertWithSips(secondTools, second.picture(), QStringLiteral("jpeg"), 0, true, false);
    EXPECT_TRUE(conversion.success);
    EXPECT_TRUE(conversion.outputPath.endsWith(QStringLiteral("/T.jpg")));
    ASSERT_EQ(second.runs().size(), 2);
    EXPECT_TRUE(second.runs()[1].startsWith(QStringLiteral("-s format jpeg -s formatOptions 100 ")));

    const ScriptedSips never(0);
    auto neverTools = never.tools();
    EXPECT_FALSE(convertWithSips(neverTools, never.picture(), QStringLiteral("TIF"), 0, true, false).success);
    EXPECT_EQ(never.runs().size(), 1);
    EXPECT_FALSE(convertWithSips(neverTools, never.picture(), QStringLiteral("psd"), 0, true, false).success);
    EXPECT_EQ(never.runs().size(), 1) << "a format outside the list starts no process";
}

TEST(OutputRoute, TakesEachFormatItsWay) {
    EXPECT_EQ(outputRoute(ImageFormat::png), OutputRoute::pngWriter);
    EXPECT_EQ(outputRoute(ImageFormat::svg), OutputRoute::systemTool);
    EXPECT_EQ(outputRoute(ImageFormat::avif), OutputRoute::imageMagick);
    EXPECT_TRUE(isCameraRaw(u"cr3"));
    EXPECT_FALSE(isCameraRaw(u"CR3")) << "callers lower the case";
}

TEST(EncoderFormat, FallsBackToPng) {
    EXPECT_EQ(encoderFormat(QStringLiteral("JPG")), QStringLiteral("jpeg"));
    EXPECT_EQ(encoderFormat(QStringLiteral("tif")), QStringLiteral("tiff"));
    EXPECT_EQ(encoderFormat(QStringLiteral("pdf")), QStringLiteral("png"));
}

TEST(ImageConverter, ThrowsForWhatItCannotReadAndLeavesNoTemporaryFile) {
    setLogSink({});
    const QTemporaryDir folder;
    const QString junk = folder.filePath(QStringLiteral("junk.png"));
    QFile file(junk);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, 'j'));
    file.close();
    const auto temporaries = [] {
        return QDir(QDir::tempPath()).entryList({QStringLiteral("sorvik_*_%1_*").arg(getpid())});
    };
    ImageConverter converter;
    for (const ImageFormat format : allImageFormats()) {
        EXPECT_THROW(static_cast<void>(converter.convertFile(junk, format, false, 1.0)), ConversionError);
    }
    EXPECT_EQ(temporaries(), QStringList());
}

TEST(ResultCache, IsEmptiedWithTheCachesOfTheProcess) {
    ResultCache::shared().insert(QStringLiteral("a"), "result");
    EXPECT_TRUE(ResultCache::shared().find(QStringLiteral("a")));
    clearProcessCaches();
    EXPECT_FALSE(ResultCache::shared().find(QStringLiteral("a")));
}

TEST(ResultCache, HoldsALimitedAmount) {
    ResultCache cache(800);
    EXPECT_EQ(cache.costLimit(), 100);
    EXPECT_EQ(ResultCache(std::int64_t{1} << 40).costLimit(), ResultCache::maxCost);
    cache.insert(QStringLiteral("a"), QByteArray(60, 'a'));
    cache.insert(QStringLiteral("b"), QByteArray(60, 'b'));
    EXPECT_FALSE(cache.find(QStringLiteral("a"))) << "the older one made room";
    EXPECT_EQ(cache.find(QStringLiteral("b")), QByteArray(60, 'b'));
    cache.clear();
    EXPECT_FALSE(cache.find(QStringLiteral("b")));
    ResultCache large(std::int64_t{1} << 40);
    large.insert(QStringLiteral("huge"), QByteArray(ResultCache::maxResultSize + 1, 'x'));
    EXPECT_FALSE(large.find(QStringLiteral("huge")));
}

}  // namespace
}  // namespace sorvik
