// EPS, AI and camera RAW: vectors, order of the tools, lines, and real runs.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "captured_log.h"
#include "engines/ai_recipe.h"
#include "engines/camera_raw_recipe.h"
#include "engines/eps_recipe.h"
#include "engines/ghostscript_run.h"
#include "engines/image_converter.h"
#include "engines/magick_run.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }
QStringList words(const char* line) { return text(line).split(u' ', Qt::SkipEmptyParts); }
QString data(const char* name) { return QStringLiteral(SORVIK_TEST_DATA "/") + text(name); }

constexpr const char* plainGs =
    "-sstdout=%stderr -dNOSAFER -dBATCH -dNOPAUSE -dNOPROMPT -dMaxBitmap=500000000 -dAlignToPixels=0 -dGridFitTT=2 "
    "-r300 -sDEVICE=pngalpha -sOutputFile=/o.png /i.eps";
constexpr const char* jpegGs =
    "-sstdout=%stderr -dNOSAFER -dBATCH -dNOPAUSE -dNOPROMPT -dMaxBitmap=500000000 -dAlignToPixels=0 -dGridFitTT=2 "
    "-r300 -sDEVICE=jpeg -sOutputFile=/o.jpg -dJPEGQ=85 /i.ai";

TEST(InterpretedVectors, AreWhole) {
    const CapturedLog quiet;
    EXPECT_EQ(ghostscriptArguments(text("pngalpha"), text("/o.png"), std::nullopt, text("/i.eps")), words(plainGs));
    EXPECT_EQ(ghostscriptArguments(text("jpeg"), text("/o.jpg"), 0.857, text("/i.ai")), words(jpegGs));
    EXPECT_EQ(epsArguments(text("/i"), text("jpg"), false, 0.9, text("/o")), words("-density 300 /i -quality 90 /o"));
    EXPECT_EQ(epsArguments(text("/i"), text("tiff"), true, 1, text("/o")),
              words("-density 300 /i -strip -define tiff:exif-properties=false -define tiff:ignore-tags=true "
                    "+profile * /o"));
    EXPECT_EQ(rawArguments(RawAttempt::first, text("/i"), text("png"), true, 1, text("/o")),
              words("-define raw:use-camera-wb=true -define raw:auto-gamma=true -density 300 /i -strip "
                    "-define png:exclude-chunk=tIME -define png:exclude-chunk=tEXt -define png:exclude-chunk=zTXt "
                    "-define png:exclude-chunk=iTXt -define png:compression-level=9 /o"));
    EXPECT_EQ(rawArguments(RawAttempt::second, text("/i"), text("webp"), false, 1, text("/o")),
              words("-define raw:use-camera-wb=true -define raw:auto-gamma=true -define raw:interpolation-quality=1 "
                    "-define raw:no-crop -define raw:no-auto-bright -density 300 /i /o"));
}

TEST(EpsDevice, FollowsTheTable) {
    struct Row {
        const char* format;
        const char* device;
    };
    for (const Row& row : {Row{"png", "pngalpha"}, Row{"JPEG", "jpeg"}, Row{"jpg", "jpeg"}, Row{"tiff", "tiff24nc"},
                           Row{"bmp", "bmp16m"}, Row{"gif", "pngalpha"}}) {
        EXPECT_EQ(epsDevice(text(row.format)), text(row.device));
    }
}

TEST(GhostscriptEnvironment, HasRelativePlaces) {
    const Environment environment =
        ghostscriptEnvironment({{text("PATH"), text("/bin")}, {text("HOME"), text("/h")}}, text("/R"), text("/F"));
    EXPECT_EQ(environment, (Environment{{text("PATH"), text("/R:/bin")},
                                        {text("HOME"), text("/h")},
                                        {text("LD_LIBRARY_PATH"), text("/F")},
                                        {text("GS_LIB"), text(".")},
                                        {text("GS_RESOURCEDIR"), text(".")},
                                        {text("GS_FONTPATH"), text(".")}}));
    EXPECT_EQ(stepPath(text("/a.b/c"), text("_temp.png")), text("/a.b/c_temp.png"));
    EXPECT_EQ(stepPath(text("/a.b/c.webp"), text("_temp.jpg")), text("/a.b/c_temp.jpg"));
}

/// A bundle whose tools are scripts that note that they were called.
class ScriptedTools : public testing::Test {
protected:
    ScriptedTools() {
        QDir().mkpath(resources());
        QFile source(path("in.eps"));
        EXPECT_TRUE(source.open(QIODevice::WriteOnly));
        source.write("%!PS\n");
    }

    /// Ends with `status` after `lines`, in which $out is the vector's last argument or what -sOutputFile names.
    void install(const char* tool, const char* lines, int status) const {
        QFile script(resources() + u'/' + text(tool));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly | QIODevice::Truncate));
        script.write(
            QStringLiteral("#!/bin/sh\nfor out; do :; done\nfor a; do case $a in -sOutputFile=*) "
                           "out=${a#-sOutputFile=};; esac; done\necho \"%1 ${out##*/}\" >> '%2'\n%3\nexit %4\n")
                .arg(text(tool), path("calls"), text(lines))
                .arg(status)
                .toUtf8());
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    [[nodiscard]] ProcessConfigCache tools() const { return ProcessConfigCache(Bundle(folder_.path())); }
    [[nodiscard]] QString path(const char* name) const { return folder_.filePath(text(name)); }
    [[nodiscard]] QStringList calls() const {
        QFile file(path("calls"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                              : QStringList();
    }
    [[nodiscard]] bool eps(const char* format) const {
        auto cache = tools();
        return convertEPSFile(cache, path("in.eps"), path("out.") + text(format), text(format), false, 1);
    }
    [[nodiscard]] bool ai(const char* format) const {
        auto cache = tools();
        return convertAIFile(cache, path("in.eps"), path("out.") + text(format), text(format), 0.5);
    }

    CapturedLog log;

private:
    [[nodiscard]] QString resources() const { return folder_.filePath(text("Contents/Resources")); }
    QTemporaryDir folder_;
};

constexpr const char* writes = "echo x > \"$out\"";

TEST_F(ScriptedTools, EpsFallsBackToTheDirectRun) {
    install("magick", "echo broken", 1);
    install("gs", writes, 0);
    EXPECT_TRUE(eps("gif"));
    EXPECT_EQ(calls(), (QStringList{text("magick out.gif"), text("gs out.gif")}));
    EXPECT_TRUE(log.lines().contains(text("ImageMagick EPS conversion error: broken\n")));
    EXPECT_EQ(log.lines().back(), text("ImageMagick failed, falling back to direct Ghostscript for EPS conversion"));
}

TEST_F(ScriptedTools, EpsThatTheLauncherRefusesIsNotTriedAgain) {
    install("magick", "", statusSourceRefused);
    install("gs", writes, 0);
    EXPECT_FALSE(eps("png"));
    EXPECT_EQ(calls(), QStringList{text("magick out.png")});
}

TEST_F(ScriptedTools, EpsToWebPWithoutMagickLeavesNoPng) {
    install("gs", writes, 0);
    EXPECT_FALSE(eps("webp"));
    EXPECT_EQ(calls(), QStringList{text("gs out_temp.png")});
    EXPECT_FALSE(QFile::exists(path("out_temp.png")));
    EXPECT_TRUE(eps("jpg"));
}

TEST_F(ScriptedTools, StatusZeroAloneIsNoSuccess) {
    install("gs", "echo nothing", 0);
    EXPECT_FALSE(eps("png"));
    EXPECT_EQ(log.lines().back(), text("Direct Ghostscript EPS conversion error: nothing\n"));
    install("gs", "echo x > \"$out\"; echo 'no startxref token found'", 0);
    EXPECT_FALSE(eps("png")) << "what was drawn of a file without its end is not the file";
    EXPECT_FALSE(ai("jpg"));
}

TEST_F(ScriptedTools, RefusedFormatsStartNothing) {
    install("magick", writes, 0);
    install("gs", writes, 0);
    auto cache = tools();
    for (const char* format : {"pdf", "avif", "heic", "ico", "svg"}) {
        EXPECT_FALSE(eps(format));
        EXPECT_EQ(log.lines().back(), text("Unsupported output format for EPS: ") + text(format));
        EXPECT_FALSE(convertRAWFile(cache, path("in.eps"), path("o"), text(format), false, 1));
        EXPECT_EQ(log.lines().back(), text("Unsupported output format for RAW: ") + text(format));
    }
    EXPECT_FALSE(ai("pdf"));
    EXPECT_EQ(log.lines().back(),
              text("[AI_CONVERSION_LOG] Supported formats: jpg, jpeg, png, svg, tiff, bmp, gif, webp"));
    EXPECT_EQ(calls(), QStringList());
}

TEST_F(ScriptedTools, AiTellsItsStepsInOrder) {
    install("gs", writes, 0);
    install("magick", writes, 0);
    EXPECT_TRUE(ai("webp"));
    EXPECT_EQ(calls(), (QStringList{text("gs out_temp.jpg"), text("magick out.webp")}));
    EXPECT_FALSE(QFile::exists(path("out_temp.jpg")));
    QStringList lines = log.lines();
    for (QString& line : lines) {
        EXPECT_TRUE(line.startsWith(text("[AI_CONVERSION_LOG] "))) << line.toStdString();
        line = line.mid(20).section(text(": "), 0, 0).section(u'=', 0, line.contains(text("===")) ? -1 : 0);
    }
    EXPECT_EQ(lines.join(u'|'),
              text("=== AI Conversion Started ===|Input|Output|Format|Quality|Safe input path|Safe output path|"
                   "Ghostscript found at|Ghostscript exists|"
                   "Using JPEG device for all formats to avoid PNG device issues|"
                   "Will convert JPEG to webp using ImageMagick later|"
                   "WebP conversion - converting to JPEG first, then WebP|Using Ghostscript device|"
                   "Added -dNOSAFER flag for device compatibility|Removed -dQUIET to get better error visibility|"
                   "Ghostscript arguments|Resources path|Resources path exists|Library path|Library path exists|"
                   "Set GS environment variables to use current directory|Set working directory to|"
                   "Environment variables:|  PATH|  LD_LIBRARY_PATH|  GS_LIB|  GS_RESOURCEDIR|  GS_FONTPATH|"
                   "Input file exists|Input file size|Output directory|Output directory exists|"
                   "Starting Ghostscript process...|Ghostscript process started, waiting for completion...|"
                   "Ghostscript process finished|Process terminated with status|Output file exists|Output file size|"
                   "Process output/error|=== GHOSTSCRIPT CONVERSION TO JPEG SUCCEEDED ===|"
                   "Converting JPEG to webp using ImageMagick|"
                   "=== CONVERSION SUCCEEDED VIA JPEG + IMAGEMAGICK ==="));
}

TEST_F(ScriptedTools, AiToJpegHasOneStepAndItsQuality) {
    install("gs", writes, 0);
    EXPECT_TRUE(ai("jpg"));
    EXPECT_TRUE(log.lines().contains(text("[AI_CONVERSION_LOG] Added JPEG quality: 50")));
    EXPECT_EQ(log.lines().back(), text("[AI_CONVERSION_LOG] === CONVERSION SUCCEEDED ==="));
    EXPECT_FALSE(ai("png"));
    EXPECT_TRUE(log.lines().contains(text("[AI_CONVERSION_LOG] Failed to setup ImageMagick for format conversion")));
    EXPECT_EQ(log.lines().back(), text("[AI_CONVERSION_LOG] Format conversion from JPEG to png failed"));
    EXPECT_FALSE(QFile::exists(path("out_temp.jpg")));
}

TEST(AiFailureLines, TakeTheFirstMatch) {
    const QString both = text("Permission denied\nUnable to open the initial device");
    EXPECT_EQ(aiFailureLines(text("Failed to initialise PDF interpreter")).size(), 3);
    EXPECT_EQ(aiFailureLines(both), (QStringList{text("ERROR TYPE: Device initialization failure"),
                                                 text("Ghostscript device 'jpeg' failed to initialize")}));
    EXPECT_EQ(aiFailureLines(text("No such file or directory")), QStringList{text("ERROR TYPE: File not found")});
    EXPECT_EQ(aiFailureLines(text("permission denied")), QStringList{text("ERROR TYPE: Unknown error")});
}

TEST(CameraRaw, GetsASecondAttemptForRafOnly) {
    const CapturedLog log;
    auto& tools = ProcessConfigCache::shared();
    const QTemporaryDir folder;
    const QString raf = folder.filePath(text("F.RAF"));
    ASSERT_TRUE(QFile::copy(data("raw/FujiFilm.raf"), raf));
    EXPECT_FALSE(convertRAWFile(tools, raf, folder.filePath(text("o.png")), text("png"), false, 1));
    EXPECT_FALSE(QFile::exists(folder.filePath(text("o.png"))));
    ASSERT_EQ(log.lines().size(), 5);
    EXPECT_TRUE(log.lines()[1].startsWith(text("ImageMagick RAW conversion error: ")));
    EXPECT_EQ(log.lines()[2], text("RAF conversion failed, trying fallback method..."));
    EXPECT_TRUE(log.lines()[4].startsWith(text("RAF fallback conversion also failed: ")));
    EXPECT_FALSE(convertRAWFile(tools, data("raw/sample.nef"), folder.filePath(text("o.jpg")), text("jpg"), false, 1));
    EXPECT_EQ(log.lines().size(), 6);
}

TEST(CameraRaw, NeedsMagick) {
    const CapturedLog quiet;
    const QTemporaryDir empty;
    ProcessConfigCache none{Bundle(empty.path())};
    ImageConverter converter(none);
    EXPECT_THROW(static_cast<void>(converter.convertRAW(data("raw/colorchart.dng"), ImageFormat::png, false, 1)),
                 ConversionError);
}

TEST(EveryAcceptedFormat, ComesOutAsWhatItIs) {
    const CapturedLog quiet;
    ImageConverter converter;
    struct Row {
        ImageFormat format;
        const char* magic;
    };
    for (const Row& row :
         {Row{ImageFormat::png, "\x89PNG"}, Row{ImageFormat::jpeg, "\xFF\xD8\xFF"}, Row{ImageFormat::tiff, "II*"},
          Row{ImageFormat::bmp, "BM"}, Row{ImageFormat::gif, "GIF8"}, Row{ImageFormat::webp, "RIFF"}}) {
        EXPECT_TRUE(converter.convertEPS(data("eps/rgb.eps"), row.format, true, 1).startsWith(row.magic));
    }
    EXPECT_TRUE(converter.convertAI(data("ai/gopher.ai"), ImageFormat::webp, 1).startsWith("RIFF"));
    EXPECT_TRUE(converter.convertAI(data("ai/gopher.ai"), ImageFormat::svg, 1).startsWith("<?xml"));
    EXPECT_TRUE(QDir(systemTempDirectory()).entryList({text("sorvik_*_temp.*"), text("sorvik_gs_*")}).isEmpty());
}

}  // namespace
}  // namespace sorvik
