// The compression recipes' vectors, compared whole, and what their inputs become.

#include <gtest/gtest.h>

#include <QStringList>

#include "engines/compression_recipes.h"
#include "engines/pdf_compression.h"
#include "platform/log.h"

namespace sorvik {
namespace {

const QString in = QStringLiteral("in");
const QString out = QStringLiteral("out");

QString joined(const QStringList& arguments) { return arguments.join(u' '); }

TEST(CompressionVectors, AreAsTheToolsExpectThem) {
    struct Row {
        QStringList arguments;
        const char* expected;
    };
    const char* const losslessPng =
        "in -define png:compression-level=4 -define png:compression-strategy=1 -define png:compression-filter=5 "
        "-strip +profile * out";
    const char* const palettePng =
        "in -colors 256 -depth 8 -dither FloydSteinberg -define png:compression-level=3 -define "
        "png:compression-strategy=1 -define png:compression-filter=5 -strip +profile * out";
    for (const Row& row : {
             Row{jpegCompressionArguments(in, 85.9, out), "in -quality 85 -interlace Plane -strip out"},
             Row{webPCompressionArguments(in, 0.9, out), "in -quality 0 -define webp:method=6 -strip out"},
             Row{heicCompressionArguments(in, 85, out),
                 "in -quality 85 -define heic:preserve-orientation=true -strip out"},
             Row{avifCompressionArguments(in, 100, out), "in -quality 100 -define avif:method=6 -strip out"},
             Row{tiffCompressionArguments(in, true, 85, out), "in -compress LZW -strip out"},
             Row{tiffCompressionArguments(in, false, 85, out), "in -compress JPEG -quality 85 -strip out"},
             Row{pngCompressionArguments(in, 3, out), palettePng},
             Row{pngCompressionArguments(in, 4, out), losslessPng},
             Row{gifCompressionArguments(in, 0, out),
                 "in -colors 32 -dither FloydSteinberg -layers Optimize -strip out"},
             Row{gifCompressionArguments(in, 3, out),
                 "in -colors 32 -dither FloydSteinberg -layers Optimize -strip out"},
             Row{gifCompressionArguments(in, 4, out), "in -colors 64 -layers Optimize -strip out"},
             Row{gifCompressionArguments(in, 10, out), "in -colors 256 -layers Optimize -strip out"},
         }) {
        EXPECT_EQ(joined(row.arguments), QString::fromLatin1(row.expected));
    }
}

TEST(PdfCompression, ChoosesTheTierTopDown) {
    struct Row {
        double quality;
        const char* preset;
    };
    for (const Row& row : {
             Row{0.8, "prepress"},
             Row{80, "prepress"},
             Row{1.0, "prepress"},
             Row{79.9, "printer"},
             Row{60, "printer"},
             Row{0.4, "ebook"},
             Row{0.39, "screen"},
             Row{1.1, "screen"},
             Row{0, "screen"},
         }) {
        EXPECT_STREQ(pdfTier(row.quality).preset, row.preset) << row.quality;
    }
    EXPECT_EQ(joined(pdfCompressionArguments(in, pdfTier(70), out)),
              QStringLiteral("-q -dNOPAUSE -dBATCH -dSAFER -sDEVICE=pdfwrite -dCompatibilityLevel=1.4 "
                             "-dPDFSETTINGS=/printer -dEmbedAllFonts=true -dSubsetFonts=true -dJPEGQ=85 "
                             "-dColorImageDownsampleType=/Bicubic -dColorImageResolution=200 "
                             "-dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=200 "
                             "-dMonoImageDownsampleType=/Subsample -dMonoImageResolution=200 -sOutputFile=out in"));
}

TEST(CompressionRecipes, SayWhatIsMissing) {
    QStringList lines;
    setLogSink([&](const QString& line) { lines << line; });
    ProcessConfigCache nothing{Bundle(QStringLiteral("/nonexistent"))};
    const QString source = QStringLiteral(SORVIK_TEST_DATA "/jpeg/hopper_gray.jpg");
    const QString result = QStringLiteral("/nonexistent/out");
    EXPECT_FALSE(compressJPEG(nothing, source, result, 85));
    EXPECT_FALSE(compressPDF(nothing, source, result, 85));
    EXPECT_FALSE(compressGIF(nothing, QString(), result, 7));
    setLogSink({});
    EXPECT_EQ(lines,
              (QStringList{QStringLiteral("ImageMagick not available for JPEG compression"),
                           QStringLiteral("Ghostscript not available for PDF compression"),
                           QStringLiteral("[ImageMagickConverter] Warning: Path became empty after normalization"),
                           QStringLiteral("Invalid or unsafe input path: ")}));
}

}  // namespace
}  // namespace sorvik
