#include "engines/sips_converter.h"

#include <QDir>

#include <algorithm>
#include <array>

#include "core/vocabulary/path_names.h"
#include "engines/magick_run.h"
#include "engines/metadata_strip.h"
#include "engines/svg_route.h"
#include "imaging/imaging_client.h"
#include "platform/log.h"

namespace sorvik {
namespace {

using codecs::SipsStatus;
using imaging::option;

struct Alias {
    const char* text;
    const char* becomes;
};

constexpr std::array formatAliases{Alias{"jpeg", "jpg"}, Alias{"jpg", "jpg"}, Alias{"tif", "tiff"},
                                   Alias{"tiff", "tiff"}};

constexpr std::array supportedSipsFormats{"bmp",  "gif",  "jpg", "jpeg", "png", "tiff", "tif", "webp",
                                          "avif", "heic", "svg", "pdf",  "ico", "eps",  "ai"};
static_assert(supportedSipsFormats.size() == 15);

struct Run {
    bool started = false;
    SipsStatus status = SipsStatus::failed;
    QString launchError;
};

/// One run of the tool, its words thrown away: the status tells enough.
Run runTool(const ProcessConfigCache& tools, const QStringList& arguments, const QString& output) {
    ChildSetup setup;
    setup.executable = tools.bundle().resource(QStringLiteral("sips")).value_or(QString());
    setup.arguments = arguments;
    setup.output = ChildSetup::Output::discarded;
    const ChildResult child = runChild(setup);
    const SipsStatus status = imaging::jobStatus(child);
    const bool empty = status == SipsStatus::finished && !hasContent(output);
    return {child.started, empty ? SipsStatus::failed : status, child.launchError};
}

struct Job {
    QString input;
    QString output;
    QString format;
    bool stripMetadata = false;
};

/// A finished run, stripped when that is asked for. `occasion` ends the line on a strip that failed.
SipsConversion finishedRun(ProcessConfigCache& tools, const Job& job, const char* occasion) {
    if (job.stripMetadata && !stripMetadata(tools, job.output, job.format, Replacer::sipsConverter)) {
        logLine(QStringLiteral("[SIPSConverter] Failed to strip metadata from ") + job.output +
                QLatin1StringView(occasion));
        return {false, job.output, SipsStatus::failed};
    }
    return {true, job.output, SipsStatus::finished};
}

/// The second try, at the top quality.
SipsConversion jpegFallback(ProcessConfigCache& tools, const Job& job) {
    const Run run = runTool(tools, sipsFallbackArguments(job.input, job.output), job.output);
    if (run.status == SipsStatus::finished) {
        return finishedRun(tools, job, " in fallback");
    }
    logLine(run.started
                ? QStringLiteral("[SIPSConverter] SIPS JPEG fallback failed for %1 to %2").arg(job.input, job.output)
                : QStringLiteral("[SIPSConverter] Error running SIPS fallback: ") + run.launchError);
    return {false, job.output, run.status};
}

SipsConversion runSips(ProcessConfigCache& tools, const Job& job, double quality, bool lossless) {
    const Run run = runTool(tools, sipsArguments(job.input, job.format, quality, lossless, job.output), job.output);
    if (!run.started) {
        logLine(QStringLiteral("[SIPSConverter] Error running SIPS: ") + run.launchError);
        return {false, job.output, run.status};
    }
    if (run.status == SipsStatus::finished) {
        return finishedRun(tools, job, "");
    }
    if (job.format == QLatin1StringView("jpg")) {
        return jpegFallback(tools, job);
    }
    logLine(QStringLiteral("[SIPSConverter] SIPS conversion failed for %1 to %2").arg(job.input, job.format));
    return {false, job.output, run.status};
}

}  // namespace

QString sipsFormat(const QString& format) {
    const QString lower = format.toLower();
    const auto* alias =
        std::ranges::find_if(formatAliases, [&](const Alias& row) { return lower == QLatin1StringView(row.text); });
    return alias == formatAliases.end() ? lower : QString::fromLatin1(alias->becomes);
}

bool isSipsFormat(const QString& format) {
    const QString lower = format.toLower();
    return std::ranges::any_of(supportedSipsFormats,
                               [&](const char* known) { return lower == QLatin1StringView(known); });
}

QStringList sipsArguments(const QString& input, const QString& format, double quality, bool lossless,
                          const QString& output) {
    const bool jpeg = format == QLatin1StringView("jpg");
    QStringList options = option("format", jpeg ? QStringLiteral("jpeg") : format);
    if (!lossless && jpeg) {
        options += option("formatOptions", QString::number(static_cast<int>(quality * 100.0)));
    } else if (!lossless && format == QLatin1StringView("png")) {
        options += option("optimize", QString::number(static_cast<int>((1.0 - quality) * 9.0)));
    }
    return options + QStringList{input, QStringLiteral("--out"), output};
}

QStringList sipsFallbackArguments(const QString& input, const QString& output) {
    return sipsArguments(input, QStringLiteral("jpg"), 1.0, false, output);
}

SipsConversion convertWithSips(ProcessConfigCache& tools, const QString& inputPath, const QString& format,
                               double quality, bool lossless, bool stripMetadata) {
    const QString target = sipsFormat(format);
    const QString outputPath = replacingExtension(inputPath, target);
    if (!isSipsFormat(target)) {
        return {false, outputPath, SipsStatus::failed};
    }
    if (inputPath.toLower().endsWith(QLatin1StringView(".svg"))) {
        const bool drawn = convertSVGWithSorvikDraw(tools, inputPath, outputPath, target);
        return {drawn, outputPath, drawn ? SipsStatus::finished : SipsStatus::failed};
    }
    const Job job{QDir::cleanPath(inputPath), QDir::cleanPath(outputPath), target, stripMetadata};
    return runSips(tools, job, quality, lossless);
}

ConversionError conversionError(SipsStatus status) {
    switch (status) {
        case SipsStatus::tooLarge:
            return ConversionError(Refusal::tooLarge);
        case SipsStatus::noSpace:
            return ConversionError(QStringLiteral("No space left on device"));
        case SipsStatus::permissionDenied:
            return ConversionError(QStringLiteral("Permission denied"));
        case SipsStatus::noSuchFile:
            return ConversionError(QStringLiteral("No such file or directory"));
        case SipsStatus::outOfMemory:
            return ConversionError(QStringLiteral("Cannot allocate memory"));
        case SipsStatus::finished:
        case SipsStatus::failed:
        case SipsStatus::badUsage:
        case SipsStatus::notARegularFile:
            return ConversionError();
    }
    Q_UNREACHABLE();
}

}  // namespace sorvik
