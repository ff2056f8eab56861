#include "engines/ai_recipe.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <array>

#include "core/vocabulary/path_names.h"
#include "engines/ghostscript_run.h"
#include "engines/image_magick_recipes.h"
#include "engines/magick_run.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr std::array aiFormats{"jpg", "jpeg", "png", "svg", "tiff", "bmp", "gif", "webp"};

struct FailureRow {
    const char* phrase;  // by which `gs` tells; the last row's matches everything
    std::array<const char*, 3> lines;
};

constexpr std::array failures{
    FailureRow{"Failed to initialise PDF interpreter",
               {"ERROR TYPE: PDF interpreter failure", "This AI file is PDF-based (modern Adobe Illustrator format)",
                "Current Ghostscript build may lack PDF interpreter support"}},
    FailureRow{
        "Unable to open the initial device",
        {"ERROR TYPE: Device initialization failure", "Ghostscript device 'jpeg' failed to initialize", nullptr}},
    FailureRow{"No such file or directory", {"ERROR TYPE: File not found", nullptr, nullptr}},
    FailureRow{"Permission denied", {"ERROR TYPE: Permission denied", nullptr, nullptr}},
    FailureRow{"", {"ERROR TYPE: Unknown error", nullptr, nullptr}},
};

constexpr std::array shownVariables{"PATH", "LD_LIBRARY_PATH", "GS_LIB", "GS_RESOURCEDIR", "GS_FONTPATH"};

void logStep(const QString& line) { logLine(QStringLiteral("[AI_CONVERSION_LOG] ") + line); }
void logStep(const char* line) { logStep(QString::fromUtf8(line)); }
void logStep(const char* label, const QString& value) { logStep(QString::fromUtf8(label) + value); }
void logStep(const char* label, bool value) {
    logStep(label, value ? QStringLiteral("true") : QStringLiteral("false"));
}

QString formatList() {
    QStringList names;
    for (const char* format : aiFormats) {
        names << QString::fromLatin1(format);
    }
    return names.join(QStringLiteral(", "));
}

/// One conversion on its way through both steps.
struct AIJob {
    QString input;
    QString output;
    QString format;  // in lower case
    double quality = 0;

    [[nodiscard]] bool isJpeg() const { return format == u"jpg" || format == u"jpeg"; }
    [[nodiscard]] QString jpeg() const { return isJpeg() ? output : stepPath(output, QStringLiteral("_temp.jpg")); }
};

std::optional<AIJob> acceptedJob(const QString& inputPath, const QString& outputPath, const QString& format,
                                 double quality) {
    const auto input = validatedInputPath(inputPath);
    if (!input) {
        logStep("ERROR: Invalid or unsafe input path: ", inputPath);
        return std::nullopt;
    }
    const auto output = normalizedPath(outputPath, GateCaller::imageMagickConverter);
    if (!output) {
        logStep("ERROR: Invalid or unsafe output path: ", outputPath);
        return std::nullopt;
    }
    logStep("Safe input path: ", *input);
    logStep("Safe output path: ", *output);
    const QString key = format.toLower();
    if (std::ranges::none_of(aiFormats, [&](const char* each) { return key == QLatin1StringView(each); })) {
        logStep("ERROR: Unsupported output format for AI: ", format);
        logStep("Supported formats: ", formatList());
        return std::nullopt;
    }
    return AIJob{*input, *output, key, quality};
}

std::optional<QString> foundGhostscript(ProcessConfigCache& tools) {
    auto gs = tools.resolveGhostscriptPath();
    if (!gs) {
        logStep("ERROR: Ghostscript not found for AI conversion");
        logStep("Tried paths: ", tools.bundle().resource(QStringLiteral("gs")).value_or(QStringLiteral("nil")));
        return std::nullopt;
    }
    logStep("Ghostscript found at: ", *gs);
    logStep("Ghostscript exists: ", QFileInfo::exists(*gs));
    return gs;
}

void logPlan(const AIJob& job) {
    logStep("Using JPEG device for all formats to avoid PNG device issues");
    if (!job.isJpeg()) {
        logStep(QStringLiteral("Will convert JPEG to %1 using ImageMagick later").arg(job.format));
    }
    if (job.format == u"webp") {
        logStep("WebP conversion - converting to JPEG first, then WebP");
    }
    logStep("Using Ghostscript device: jpeg");
}

QStringList loggedArguments(const AIJob& job, const QString& input, const QString& jpeg) {
    const auto quality = job.isJpeg() ? std::optional(job.quality) : std::nullopt;
    QStringList arguments = ghostscriptArguments(QStringLiteral("jpeg"), jpeg, quality, input);
    logStep("Added -dNOSAFER flag for device compatibility");
    logStep("Removed -dQUIET to get better error visibility");
    if (quality) {
        const QString option = arguments[arguments.size() - 2];
        logStep("Added JPEG quality: ", option.mid(option.indexOf(u'=') + 1));
    }
    logStep("Ghostscript arguments: ", arguments.join(u' '));
    return arguments;
}

void logSurroundings(const ProcessConfigCache& tools, const ChildSetup& task) {
    const auto resources = tools.bundle().resourceDirectory();
    const QString libraries = tools.bundle().frameworksDirectory();
    logStep("Resources path: ", resources.value_or(QStringLiteral("nil")));
    logStep("Resources path exists: ", resources.has_value());
    logStep("Library path: ", libraries);
    logStep("Library path exists: ", QFileInfo::exists(libraries));
    logStep("Set GS environment variables to use current directory");
    logStep("Set working directory to: ", task.workingDirectory);
    logStep("Environment variables:");
    const Environment environment = task.environment.value_or(Environment());
    for (const char* name : shownVariables) {
        const QString key = QString::fromLatin1(name);
        logStep(QStringLiteral("  %1=").arg(key) + environment.value(key, QStringLiteral("<not set>")));
    }
}

void logFiles(const AIJob& job) {
    const QFileInfo input(job.input);
    const QString folder = parentDirectory(job.output);
    logStep("Input file exists: ", input.exists());
    if (input.exists()) {
        logStep("Input file size: ", QString::number(input.size()));
    }
    logStep("Output directory: ", folder);
    logStep("Output directory exists: ", QFileInfo::exists(folder));
}

void logFailure(const QString& said) {
    logStep("=== CONVERSION FAILED ===");
    for (const QString& line : aiFailureLines(said)) {
        logStep(line);
    }
    logStep("Full error output: ", said);
}

/// Runs `gs` and judges what it left at `jpeg`, its name for the run.
bool runLogged(const ChildSetup& task, const QString& jpeg) {
    logStep("Starting Ghostscript process...");
    const ChildResult result = runGhostscript(task);
    if (!result.started) {
        logStep("=== FAILED TO START PROCESS ===");
        logStep("Error: ", result.launchError);
        return false;
    }
    logStep("Ghostscript process started, waiting for completion...");
    logStep("Ghostscript process finished");
    const QString said = decodedOutput(result.output, QStringLiteral("Unknown output"));
    const QFileInfo file(jpeg);
    logStep("Process terminated with status: ", QString::number(result.exitStatus));
    logStep("Output file exists: ", file.exists());
    if (file.exists()) {
        logStep("Output file size: ", QString::number(file.size()));
    }
    logStep("Process output/error: ", said);
    if (result.succeeded() && hasContent(jpeg) && !tellsOfDamage(said)) {
        return true;
    }
    logFailure(said);
    return false;
}

bool makeJpeg(const ProcessConfigCache& tools, const QString& gs, const AIJob& job) {
    const PathAlias input = PathAlias::forInput(job.input);
    const PathAlias jpeg = PathAlias::forOutput(job.jpeg());
    logPlan(job);
    const ChildSetup task = ghostscriptTask(tools, gs, loggedArguments(job, input.path(), jpeg.path()));
    logSurroundings(tools, task);
    logFiles(job);
    return runLogged(task, jpeg.path()) && jpeg.settle();
}

bool convertJpeg(ProcessConfigCache& tools, const AIJob& job) {
    if (job.format == u"webp") {
        return convertWebPFile(tools, job.jpeg(), job.output, job.quality);
    }
    auto task = tools.makeMagickTask();
    if (!task) {
        logStep("Failed to setup ImageMagick for format conversion");
        return false;
    }
    const PathAlias jpeg = PathAlias::forInput(job.jpeg());
    const PathAlias output = PathAlias::forOutput(job.output);
    task->arguments = fileRecipeArguments(jpeg.path(), job.format, job.quality, output.path());
    return runMagickTask(*task, output.path(), QStringLiteral("JPEG to %1 conversion").arg(job.format)) &&
           output.settle();
}

/// Ends a conversion that began with its JPEG.
bool secondStep(ProcessConfigCache& tools, const AIJob& job) {
    logStep(QStringLiteral("Converting JPEG to %1 using ImageMagick").arg(job.format));
    const bool converted = convertJpeg(tools, job);
    if (converted) {
        logStep("=== CONVERSION SUCCEEDED VIA JPEG + IMAGEMAGICK ===");
    } else {
        logStep(QStringLiteral("Format conversion from JPEG to %1 failed").arg(job.format));
    }
    return converted;
}

}  // namespace

QStringList aiFailureLines(const QString& toolOutput) {
    const auto* row = std::ranges::find_if(
        failures, [&](const FailureRow& each) { return toolOutput.contains(QLatin1StringView(each.phrase)); });
    QStringList lines;
    for (const char* line : row->lines) {
        if (line != nullptr) {
            lines << QString::fromUtf8(line);
        }
    }
    return lines;
}

bool convertAIFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                   const QString& format, double quality) {
    logStep("=== AI Conversion Started ===");
    logStep("Input: ", inputPath);
    logStep("Output: ", outputPath);
    logStep("Format: ", format);
    logStep("Quality: ", QString::number(quality));
    const auto job = acceptedJob(inputPath, outputPath, format, quality);
    const auto gs = job ? foundGhostscript(tools) : std::nullopt;
    if (!gs) {
        return false;
    }
    const auto removeJpeg = qScopeGuard([&] {
        if (!job->isJpeg()) {
            QFile::remove(job->jpeg());
        }
    });
    if (!makeJpeg(tools, *gs, *job)) {
        return false;
    }
    logStep("=== GHOSTSCRIPT CONVERSION TO JPEG SUCCEEDED ===");
    if (job->isJpeg()) {
        logStep("=== CONVERSION SUCCEEDED ===");
        return true;
    }
    return secondStep(tools, *job);
}

}  // namespace sorvik
