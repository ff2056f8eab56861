#include <gtest/gtest.h>

#include <QStringList>

#include "core/vocabulary/failure_messages.h"
#include "core/vocabulary/formats.h"
#include "core/vocabulary/path_names.h"

namespace sorvik {
namespace {

QStringList rawValues(InputFormat input) {
    QStringList values;
    for (const ImageFormat format : supportedOutputFormats(input)) {
        values << rawValue(format);
    }
    return values;
}

TEST(Formats, AreRecognisedByTheirExtensionInAnyCase) {
    const auto detected = [](const char* name) { return detectInputFormat(pathExtension(QString::fromUtf8(name))); };
    EXPECT_EQ(detected("photo.JPG"), InputFormat::jpeg);
    EXPECT_EQ(detected("photo.JpEg"), InputFormat::jpeg);
    EXPECT_EQ(detected("a.tif"), InputFormat::tiff);
    EXPECT_EQ(detected("a.heif"), InputFormat::heic);
    EXPECT_EQ(detected("a.nef"), InputFormat::raw);
    EXPECT_EQ(detected("a.DNG"), InputFormat::raw);
    for (const char* name : {"a", "a.", ".png", "a.jp2", "folder.png/scan", "a.cr3", "a.jpgx"}) {
        EXPECT_EQ(detected(name), std::nullopt) << name;
    }
}

TEST(Formats, OfferTheirTargetsInOrder) {
    EXPECT_EQ(rawValues(InputFormat::jpeg).join(u' '), QStringLiteral("PNG WEBP TIFF BMP HEIC AVIF PDF"));
    EXPECT_EQ(rawValues(InputFormat::gif).join(u' '), QStringLiteral("PNG WEBP AVIF"));
    EXPECT_EQ(rawValues(InputFormat::ai).join(u' '), QStringLiteral("PNG JPEG TIFF PDF AVIF SVG"));
    EXPECT_EQ(rawValues(InputFormat::ico).join(u' '),
              QStringLiteral("BMP GIF HEIC ICO JPEG PNG TIFF WEBP SVG PDF AVIF"));
}

TEST(Formats, SpellThemselvesForStoresAndForFiles) {
    EXPECT_EQ(fileExtension(ImageFormat::jpeg), QStringLiteral("jpg"));
    EXPECT_EQ(rawValue(InputFormat::jpeg), QStringLiteral("JPEG"));
    EXPECT_EQ(imageFormatFromRawValue(u"WEBP"), ImageFormat::webp);
    EXPECT_EQ(imageFormatFromRawValue(u"webp"), std::nullopt);
    for (const ImageFormat format : allImageFormats()) {
        EXPECT_EQ(imageFormatFromRawValue(rawValue(format)), format);
    }
}

TEST(Formats, TellWhatTakesPartInCompression) {
    EXPECT_TRUE(isCompressible(ImageFormat::heic));
    EXPECT_FALSE(isCompressible(InputFormat::heic));
    EXPECT_FALSE(isCompressible(ImageFormat::bmp));
    EXPECT_EQ(compressedOutputFormat(InputFormat::psd), ImageFormat::png);
    EXPECT_EQ(compressedOutputFormat(InputFormat::avif), ImageFormat::avif);
}

TEST(UserMessage, TakesTheFirstSentenceThatMatches) {
    const auto startOf = [](const char* raw) { return userMessage(QString::fromUtf8(raw)).section(u'.', 0, 0); };
    const auto text = [](const char* literal) { return QString::fromUtf8(literal); };
    EXPECT_EQ(startOf("unable to open image: No such file or directory"), text("The file could not be found"));
    EXPECT_EQ(startOf("Permission Denied"), text("Permission denied"));
    EXPECT_EQ(startOf("x is NOT A VALID y"), text("This file format is not supported or the file may be corrupted"));
    EXPECT_EQ(startOf("Cannot allocate memory"), text("Not enough memory to process this file"));
    EXPECT_EQ(startOf("No space left on device"), text("Not enough disk space to complete the conversion"));
    EXPECT_EQ(startOf("Device or resource busy"), text("The file is currently in use by another process"));
    EXPECT_EQ(startOf(""), text("The conversion failed"));
}

TEST(PathNames, SplitAtTheLastDot) {
    EXPECT_EQ(stem(u"/a.b/photo.final.png"), u"photo.final");
    EXPECT_EQ(stem(u"/a.b/scan"), u"scan");
    EXPECT_EQ(stem(u".hidden"), u".hidden");
    EXPECT_EQ(replacingExtension(u"/a.b/T.png", u"jpg"), QStringLiteral("/a.b/T.jpg"));
    EXPECT_EQ(replacingExtension(u"/a.b/T", u"jpg"), QStringLiteral("/a.b/T.jpg"));
    EXPECT_EQ(parentDirectory(u"/a"), QStringLiteral("/"));
    EXPECT_EQ(parentDirectory(u"/a/b"), QStringLiteral("/a"));
}

}  // namespace
}  // namespace sorvik
