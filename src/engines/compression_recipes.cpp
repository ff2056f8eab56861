#include "engines/compression_recipes.h"

#include "engines/image_magick_recipes.h"
#include "engines/magick_run.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr int firstLosslessLevel = 4;  // of PNG; for GIF the first without dithering

QStringList words(const char* line) { return QString::fromLatin1(line).split(u' '); }

QString truncated(double quality) { return QString::number(static_cast<qint64>(quality)); }

QStringList qualityOption(double quality) { return {QStringLiteral("-quality"), truncated(quality)}; }

/// What all recipes share. `arguments` makes the vector from the paths that the tool is given.
template <typename Arguments>
bool runRecipe(ProcessConfigCache& tools, const char* format, const QString& inputPath, const QString& outputPath,
               Arguments arguments) {
    const auto paths = gatedPaths(inputPath, outputPath);
    if (!paths) {
        return false;
    }
    auto task = tools.makeMagickTask();
    if (!task) {
        logLine(QStringLiteral("ImageMagick not available for %1 compression").arg(QLatin1StringView(format)));
        return false;
    }
    warnIfOverwriting(paths->output);
    const PathAlias input = PathAlias::forInput(paths->input);
    const PathAlias output = PathAlias::forOutput(paths->output);
    task->arguments = arguments(input.path(), output.path());
    const QString context = QLatin1StringView(format) + QStringLiteral(" Compression");
    return magickOutcome(*task, output.path(), context) == MagickOutcome::done && output.settle();
}

}  // namespace

QStringList jpegCompressionArguments(const QString& input, double quality, const QString& output) {
    return QStringList{input} + qualityOption(quality) + words("-interlace Plane -strip") + QStringList{output};
}

QStringList webPCompressionArguments(const QString& input, double quality, const QString& output) {
    return QStringList{input} + qualityOption(quality) + words("-define webp:method=6 -strip") + QStringList{output};
}

QStringList heicCompressionArguments(const QString& input, double quality, const QString& output) {
    return QStringList{input} + qualityOption(quality) + words("-define heic:preserve-orientation=true -strip") +
           QStringList{output};
}

QStringList avifCompressionArguments(const QString& input, double quality, const QString& output) {
    return QStringList{input} + qualityOption(quality) + words("-define avif:method=6 -strip") + QStringList{output};
}

QStringList tiffCompressionArguments(const QString& input, bool lossless, double quality, const QString& output) {
    const QStringList compression =
        lossless ? words("-compress LZW") : words("-compress JPEG") + qualityOption(quality);
    return QStringList{input} + compression + QStringList{QStringLiteral("-strip"), output};
}

QStringList pngCompressionArguments(const QString& input, int level, const QString& output) {
    const QStringList palette =
        level < firstLosslessLevel ? words("-colors 256 -depth 8 -dither FloydSteinberg") : QStringList();
    const QStringList rest =
        QStringList{QStringLiteral("-define"), QStringLiteral("png:compression-level=%1").arg(level)} +
        words("-define png:compression-strategy=1 -define png:compression-filter=5 -strip +profile *");
    return QStringList{input} + palette + rest + QStringList{output};
}

QStringList gifCompressionArguments(const QString& input, int level, const QString& output) {
    const QStringList colors{QStringLiteral("-colors"), QString::number(gifColors(level))};
    const QStringList dither = level < firstLosslessLevel ? words("-dither FloydSteinberg") : QStringList();
    return QStringList{input} + colors + dither + words("-layers Optimize -strip") + QStringList{output};
}

bool compressJPEG(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, double quality) {
    return runRecipe(tools, "JPEG", inputPath, outputPath, [&](const QString& input, const QString& output) {
        return jpegCompressionArguments(input, quality, output);
    });
}

bool compressWebP(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, double quality) {
    return runRecipe(tools, "WebP", inputPath, outputPath, [&](const QString& input, const QString& output) {
        return webPCompressionArguments(input, quality, output);
    });
}

bool compressHEIC(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, double quality) {
    return runRecipe(tools, "HEIC", inputPath, outputPath, [&](const QString& input, const QString& output) {
        return heicCompressionArguments(input, quality, output);
    });
}

bool compressAVIF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, double quality) {
    return runRecipe(tools, "AVIF", inputPath, outputPath, [&](const QString& input, const QString& output) {
        return avifCompressionArguments(input, quality, output);
    });
}

bool compressTIFF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, bool lossless,
                  double quality) {
    return runRecipe(tools, "TIFF", inputPath, outputPath, [&](const QString& input, const QString& output) {
        return tiffCompressionArguments(input, lossless, quality, output);
    });
}

bool compressPNG(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, int level) {
    return runRecipe(tools, "PNG", inputPath, outputPath, [&](const QString& input, const QString& output) {
        return pngCompressionArguments(input, level, output);
    });
}

bool compressGIF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, int level) {
    return runRecipe(tools, "GIF", inputPath, outputPath, [&](const QString& input, const QString& output) {
        logLine(QStringLiteral("🔧 GIF Compression executing with level: %1").arg(level));
        return gifCompressionArguments(input, level, output);
    });
}

}  // namespace sorvik
