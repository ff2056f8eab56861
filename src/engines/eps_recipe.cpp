#include "engines/eps_recipe.h"

#include <QFile>
#include <QScopeGuard>

#include <algorithm>
#include <array>

#include "engines/ghostscript_run.h"
#include "engines/image_magick_recipes.h"
#include "engines/magick_run.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr std::array epsFormats{"jpg", "jpeg", "png", "tiff", "bmp", "gif", "webp"};

struct DeviceRow {
    const char* format;
    const char* device;
};

// Formats without a row get "pngalpha".
constexpr std::array epsDevices{
    DeviceRow{"png", "pngalpha"},  DeviceRow{"jpg", "jpeg"},   DeviceRow{"jpeg", "jpeg"},
    DeviceRow{"tiff", "tiff24nc"}, DeviceRow{"bmp", "bmp16m"},
};

bool isJpeg(const QString& format) { return format == u"jpg" || format == u"jpeg"; }

/// One run to what the device of a format writes.
bool runDevice(const ProcessConfigCache& tools, const QString& gs, const QString& inputPath, const QString& outputPath,
               const QString& format, double quality) {
    const PathAlias input = PathAlias::forInput(inputPath);
    const PathAlias output = PathAlias::forOutput(outputPath);
    const auto jpegQuality = isJpeg(format) ? std::optional(quality) : std::nullopt;
    const ChildResult result = runGhostscript(
        ghostscriptTask(tools, gs, ghostscriptArguments(epsDevice(format), output.path(), jpegQuality, input.path())));
    if (!result.started) {
        logLine(QStringLiteral("Failed to run direct Ghostscript for EPS: ") + result.launchError);
        return false;
    }
    const QString said = decodedOutput(result.output, QStringLiteral("Unknown error"));
    if (result.succeeded() && hasContent(output.path()) && !tellsOfDamage(said)) {
        return output.settle();
    }
    logLine(QStringLiteral("Direct Ghostscript EPS conversion error: ") + said);
    return false;
}

bool convertThroughPng(ProcessConfigCache& tools, const QString& gs, const QString& inputPath,
                       const QString& outputPath, double quality) {
    const QString png = stepPath(outputPath, QStringLiteral("_temp.png"));
    const auto removePng = qScopeGuard([&] { QFile::remove(png); });
    return runDevice(tools, gs, inputPath, png, QStringLiteral("png"), quality) &&
           convertWebPFile(tools, png, outputPath, quality);
}

}  // namespace

QStringList epsArguments(const QString& input, const QString& format, bool stripMetadata, double quality,
                         const QString& output) {
    QStringList arguments{QStringLiteral("-density"), QStringLiteral("300"), input};
    if (stripMetadata) {
        arguments += metadataArguments(format);
    }
    return arguments + qualityArguments(format, quality) + QStringList{output};
}

QString epsDevice(const QString& format) {
    const auto* row = std::ranges::find_if(
        epsDevices, [&](const DeviceRow& each) { return format.toLower() == QLatin1StringView(each.format); });
    return QString::fromLatin1(row == epsDevices.end() ? "pngalpha" : row->device);
}

bool convertEPSFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                    const QString& format, bool stripMetadata, double quality) {
    const auto paths = gatedPaths(inputPath, outputPath);
    if (!paths) {
        return false;
    }
    const QString key = format.toLower();
    if (std::ranges::none_of(epsFormats, [&](const char* each) { return key == QLatin1StringView(each); })) {
        logLine(QStringLiteral("Unsupported output format for EPS: ") + format);
        return false;
    }
    warnIfOverwriting(paths->output);
    auto task = tools.makeMagickTask();
    if (!task) {
        return convertEPSWithGhostscript(tools, paths->input, paths->output, format, stripMetadata, quality);
    }
    const PathAlias input = PathAlias::forInput(paths->input);
    const PathAlias output = PathAlias::forOutput(paths->output);
    task->arguments = epsArguments(input.path(), key, stripMetadata, quality, output.path());
    const MagickOutcome outcome =
        magickOutcome(*task, output.path(), QStringLiteral("ImageMagick EPS conversion error"));
    if (outcome == MagickOutcome::done && output.settle()) {
        return true;
    }
    if (outcome == MagickOutcome::sourceRefused) {
        return false;  // the direct run would make half a picture of it, or an empty page
    }
    logLine(QStringLiteral("ImageMagick failed, falling back to direct Ghostscript for EPS conversion"));
    return convertEPSWithGhostscript(tools, paths->input, paths->output, format, stripMetadata, quality);
}

bool convertEPSWithGhostscript(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                               const QString& format, bool /*stripMetadata*/, double quality) {
    const auto gs = tools.resolveGhostscriptPath();
    if (!gs) {
        logLine(QStringLiteral("Ghostscript not found for EPS fallback conversion"));
        return false;
    }
    const QString key = format.toLower();
    return key == u"webp" ? convertThroughPng(tools, *gs, inputPath, outputPath, quality)
                          : runDevice(tools, *gs, inputPath, outputPath, key, quality);
}

}  // namespace sorvik
