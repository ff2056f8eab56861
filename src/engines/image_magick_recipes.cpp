#include "engines/image_magick_recipes.h"

#include <algorithm>
#include <array>

#include "core/vocabulary/path_names.h"
#include "engines/magick_run.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "platform/log.h"

namespace sorvik {
namespace {

enum class QualityOption { none, percent, fixed, pngLevel, gifColors };

struct QualityRow {
    const char* format;
    QualityOption option;
};

// Formats without a row get no option.
constexpr std::array qualityOptions{
    QualityRow{"jpg", QualityOption::percent},  QualityRow{"jpeg", QualityOption::percent},
    QualityRow{"svg", QualityOption::fixed},    QualityRow{"ico", QualityOption::fixed},
    QualityRow{"png", QualityOption::pngLevel}, QualityRow{"gif", QualityOption::gifColors},
    QualityRow{"avif", QualityOption::percent},
};

struct MetadataRow {
    const char* format;
    std::array<const char*, 8> arguments;
};

// What follows "-strip"; formats without a row get nothing more.
constexpr std::array metadataOptions{
    MetadataRow{"png",
                {"-define", "png:exclude-chunk=tIME", "-define", "png:exclude-chunk=tEXt", "-define",
                 "png:exclude-chunk=zTXt", "-define", "png:exclude-chunk=iTXt"}},
    MetadataRow{"tiff", {"-define", "tiff:exif-properties=false", "-define", "tiff:ignore-tags=true", "+profile", "*"}},
    MetadataRow{"tif", {"-define", "tiff:exif-properties=false", "-define", "tiff:ignore-tags=true", "+profile", "*"}},
    MetadataRow{"jpg", {"+profile", "*"}},
    MetadataRow{"jpeg", {"+profile", "*"}},
};

constexpr std::array colorsByLevel{16, 24, 32, 64, 96, 128, 192, 224, 256};
constexpr int colorsBelowLevels = 32;

struct FileRecipe {
    const char* extension;
    const char* refusal;
    const char* context;
};

constexpr FileRecipe webPRecipe{"webp", "Unsupported output format for WebP: ", "ImageMagick WebP conversion error"};
constexpr FileRecipe avifRecipe{"avif", "Unsupported output format for AVIF: ", "ImageMagick AVIF conversion error"};

template <typename Table>
const auto* findFormat(const Table& table, const QString& format) {
    const QByteArray key = format.toLower().toLatin1();
    const auto* row = std::ranges::find_if(table, [&](const auto& candidate) { return key == candidate.format; });
    return row == table.end() ? nullptr : row;
}

QStringList pngLevelArguments(double quality) {
    const auto level = QString::number(static_cast<int>(quality * 9.0));
    logLine(QStringLiteral("PNG compression level: ") + level);
    return {QStringLiteral("-define"), QStringLiteral("png:compression-level=") + level};
}

QStringList gifColorArguments(double quality) {
    const int level = static_cast<int>((1.0 - quality) * 8.0) + 1;
    const auto colors = QString::number(gifColors(level));
    logLine(QStringLiteral("GIF palette colors: %1 (compression level: %2)").arg(colors).arg(level));
    return {QStringLiteral("-colors"), colors};
}

bool runFileRecipe(ProcessConfigCache& tools, const FileRecipe& recipe, const QString& inputPath,
                   const QString& outputPath, double quality) {
    const auto paths = gatedPaths(inputPath, outputPath);
    if (!paths) {
        return false;
    }
    const QString format = QString::fromLatin1(recipe.extension);
    if (pathExtension(paths->output).toString().toLower() != format) {
        logLine(QString::fromLatin1(recipe.refusal) + paths->output);
        return false;
    }
    warnIfOverwriting(paths->output);
    auto task = tools.makeMagickTask();
    if (!task) {
        return false;
    }
    const PathAlias input = PathAlias::forInput(paths->input);
    const PathAlias output = PathAlias::forOutput(paths->output);
    task->arguments = fileRecipeArguments(input.path(), format, quality, output.path());
    return runMagickTask(*task, output.path(), QString::fromLatin1(recipe.context)) && output.settle();
}

}  // namespace

QStringList metadataArguments(const QString& format) {
    QStringList arguments{QStringLiteral("-strip")};
    if (const auto* row = findFormat(metadataOptions, format)) {
        for (const char* argument : row->arguments) {
            if (argument != nullptr) {
                arguments << QString::fromLatin1(argument);
            }
        }
    }
    return arguments;
}

QStringList qualityArguments(const QString& format, double quality) {
    const double clamped = std::clamp(quality, 0.0, 1.0);
    const auto* row = findFormat(qualityOptions, format);
    switch (row == nullptr ? QualityOption::none : row->option) {
        case QualityOption::none:
            return {};
        case QualityOption::percent:
            return {QStringLiteral("-quality"), QString::number(static_cast<int>(clamped * 100.0))};
        case QualityOption::fixed:
            return {QStringLiteral("-quality"), QStringLiteral("100")};
        case QualityOption::pngLevel:
            return pngLevelArguments(clamped);
        case QualityOption::gifColors:
            return gifColorArguments(clamped);
    }
    Q_UNREACHABLE();
}

int gifColors(int level) {
    if (level < 1) {
        return colorsBelowLevels;
    }
    return colorsByLevel[std::min(static_cast<std::size_t>(level), colorsByLevel.size()) - 1];
}

QStringList fileRecipeArguments(const QString& input, const QString& format, double quality, const QString& output) {
    return QStringList{input} + qualityArguments(format, quality) + QStringList{output};
}

bool convertWebPFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, double quality) {
    return runFileRecipe(tools, webPRecipe, inputPath, outputPath, quality);
}

bool convertAVIFFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, double quality) {
    return runFileRecipe(tools, avifRecipe, inputPath, outputPath, quality);
}

}  // namespace sorvik
