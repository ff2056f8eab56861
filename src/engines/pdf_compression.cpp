#include "engines/pdf_compression.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

#include "engines/ghostscript_run.h"
#include "engines/magick_run.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "platform/files.h"
#include "platform/log.h"

namespace sorvik {
namespace {

struct TierRow {
    double threshold;  // a quality at or above it, as a fraction
    PdfTier tier;
};

constexpr std::array tiers{
    TierRow{0.8, {"prepress", 95, 300}},
    TierRow{0.6, {"printer", 85, 200}},
    TierRow{0.4, {"ebook", 75, 144}},
};
constexpr PdfTier lowestTier{"screen", 60, 72};
static_assert(std::ranges::is_sorted(tiers, std::ranges::greater{}, &TierRow::threshold));

constexpr double percent = 100.0;

double normalized(double quality) { return quality > 1.0 ? quality / percent : quality; }

void logStep(const QString& line) { logLine(QStringLiteral("[PDF_COMPRESSION] ") + line); }

QString truth(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

void logTier(double quality, const PdfTier& tier) {
    logLine(QStringLiteral("🔧 PDF Compression executing with quality: %1").arg(quality));
    logLine(QStringLiteral("🔧 Normalized quality: %1").arg(normalized(quality)));
    logLine(QStringLiteral("PDF compression using settings: %1 at %2 DPI, JPEG quality: %3")
                .arg(QLatin1StringView(tier.preset))
                .arg(tier.resolution)
                .arg(tier.jpegQuality));
}

void logPlaces(const ProcessConfigCache& tools) {
    const auto resources = tools.bundle().resourceDirectory();
    if (resources) {
        logStep(QStringLiteral("Resources path: ") + *resources);
    }
    logStep(QStringLiteral("Library path: ") + tools.bundle().frameworksDirectory());
    if (resources) {
        logStep(QStringLiteral("Set working directory to: ") + *resources);
    }
}

bool succeeded(const ChildResult& child, const QString& outputPath) {
    logStep(QStringLiteral("Ghostscript process started, waiting for completion..."));
    logStep(QStringLiteral("Ghostscript process finished"));
    const bool exists = QFileInfo::exists(outputPath);
    logStep(QStringLiteral("Process terminated with status: %1").arg(child.exitStatus));
    logStep(QStringLiteral("Output file exists: ") + truth(exists));
    if (exists) {
        logStep(QStringLiteral("Output file size: %1 bytes").arg(fileSize(outputPath).value_or(0)));
    }
    // It ends well for a page that it could not draw.
    const QString said = decodedOutput(child.output, QStringLiteral("Unknown output"));
    if (child.succeeded() && hasContent(outputPath) && !tellsOfDamage(said)) {
        logStep(QStringLiteral("=== COMPRESSION SUCCEEDED ==="));
        return true;
    }
    logStep(QStringLiteral("=== COMPRESSION FAILED ==="));
    logStep(QStringLiteral("Process output/error: ") + said);
    return false;
}

bool runTask(const ChildSetup& task, const QString& outputPath) {
    logStep(QStringLiteral("Starting Ghostscript process..."));
    const ChildResult child = runGhostscript(task);
    if (!child.started) {
        logStep(QStringLiteral("=== FAILED TO START PROCESS ==="));
        logStep(QStringLiteral("Error: ") + child.launchError);
        return false;
    }
    return succeeded(child, outputPath);
}

}  // namespace

PdfTier pdfTier(double quality) {
    const auto* row = std::ranges::find_if(
        tiers, [fraction = normalized(quality)](const TierRow& candidate) { return fraction >= candidate.threshold; });
    return row == tiers.end() ? lowestTier : row->tier;
}

QStringList pdfCompressionArguments(const QString& input, const PdfTier& tier, const QString& output) {
    const QString resolution = QString::number(tier.resolution);
    return {QStringLiteral("-q"),
            QStringLiteral("-dNOPAUSE"),
            QStringLiteral("-dBATCH"),
            QStringLiteral("-dSAFER"),
            QStringLiteral("-sDEVICE=pdfwrite"),
            QStringLiteral("-dCompatibilityLevel=1.4"),
            QStringLiteral("-dPDFSETTINGS=/") + QLatin1StringView(tier.preset),
            QStringLiteral("-dEmbedAllFonts=true"),
            QStringLiteral("-dSubsetFonts=true"),
            QStringLiteral("-dJPEGQ=%1").arg(tier.jpegQuality),
            QStringLiteral("-dColorImageDownsampleType=/Bicubic"),
            QStringLiteral("-dColorImageResolution=") + resolution,
            QStringLiteral("-dGrayImageDownsampleType=/Bicubic"),
            QStringLiteral("-dGrayImageResolution=") + resolution,
            QStringLiteral("-dMonoImageDownsampleType=/Subsample"),
            QStringLiteral("-dMonoImageResolution=") + resolution,
            QStringLiteral("-sOutputFile=") + output,
            input};
}

bool compressPDF(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath, double quality) {
    const auto paths = gatedPaths(inputPath, outputPath);
    if (!paths) {
        return false;
    }
    const auto ghostscript = tools.resolveGhostscriptPath();
    if (!ghostscript) {
        logLine(QStringLiteral("Ghostscript not available for PDF compression"));
        return false;
    }
    warnIfOverwriting(paths->output);
    const PdfTier tier = pdfTier(quality);
    logTier(quality, tier);
    logPlaces(tools);
    const PathAlias input = PathAlias::forInput(paths->input);
    const PathAlias output = PathAlias::forOutput(paths->output);
    const QStringList arguments = pdfCompressionArguments(input.path(), tier, output.path());
    return runTask(ghostscriptTask(tools, *ghostscript, arguments), output.path()) && output.settle();
}

}  // namespace sorvik
