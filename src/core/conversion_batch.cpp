#include "core/conversion_batch.h"

#include <QCoroFuture>
#include <QDir>

#include <algorithm>

#include "core/compression_values.h"
#include "core/file_processing_view_model.h"
#include "core/output_naming.h"
#include "core/vocabulary/path_names.h"
#include "engines/source_check.h"

namespace sorvik {
namespace {

constexpr double conversionQuality = 1.0;

bool isOffered(InputFormat input, ImageFormat output) {
    const auto offered = supportedOutputFormats(input);
    return std::ranges::find(offered, output) != offered.end();
}

/// A conversion must not take the place of its own source, by its name or through a link. The one that may
/// is on offer under the source's own name: an icon made anew.
void refuseReplacingSource(const FileItem& item, const QString& output) {
    const bool same = fileIdentity(item.path()) == fileIdentity(output);
    const bool renewed = output == item.path() && isOffered(*item.inputFormat, *item.outputFormat);
    if (same && !renewed) {
        throw ConversionError(Refusal::outputIsSource);
    }
}

}  // namespace

std::optional<QString> conversionSummary(int succeeded, int failed, bool cancelled) {
    if (cancelled) {
        return QStringLiteral("Processing cancelled.");
    }
    if (failed > 0) {
        return QStringLiteral("Conversion complete. %1 succeeded, %2 failed. Check status column for details.")
            .arg(succeeded)
            .arg(failed);
    }
    return succeeded > 0 ? std::optional(QStringLiteral("Conversion complete. %1 file(s) succeeded.").arg(succeeded))
                         : std::nullopt;
}

ConversionBatch::ConversionBatch(FileProcessingViewModel& model, bool removeMetadata)
    : Batch(model, removeMetadata,
            {"batch_conversion", "conversion", "Processing failed: ", "Error processing file "}) {}

std::optional<QString> ConversionBatch::summary(int succeeded, int failed, bool cancelled) const {
    return conversionSummary(succeeded, failed, cancelled);
}

std::optional<QString> ConversionBatch::skipReason(const FileItem& item) const {
    if (!item.inputFormat) {
        return QStringLiteral("Skipped: Invalid input format");
    }
    return item.outputFormat ? std::nullopt : std::optional(QStringLiteral("Skipped: Output format not selected"));
}

QCoro::Task<std::optional<ConversionError>> ConversionBatch::process(WorkItem work) {
    const QFuture<Attempt<Converted>> conversion = startConverting(work);
    const Attempt<Converted> attempt = co_await conversion;
    if (const auto* error = std::get_if<ConversionError>(&attempt)) {
        co_return *error;
    }
    if (!indexOf(work)) {
        co_return std::nullopt;
    }
    const auto& converted = std::get<Converted>(attempt);
    const FinishJob job = makeFinishJob(work, converted);
    OutputLanes::Pass pass(lanes(), converted.folder + u'/' + fileName(job.outputPath).toString());
    co_await pass.turn();
    if (!indexOf(work)) {
        co_return std::nullopt;
    }
    const QFuture<Attempt<FinishedFile>> finishing = startFinishing(job);
    const Attempt<FinishedFile> finished = co_await finishing;
    if (const auto* error = std::get_if<ConversionError>(&finished)) {
        co_return *error;
    }
    showFinished(work, std::get<FinishedFile>(finished));
    co_return std::nullopt;
}

QFuture<Attempt<ConversionBatch::Converted>> ConversionBatch::startConverting(const WorkItem& work) {
    showStatus(work, ConversionStatus::converting);
    const QString output = outputPath(work.item.path(), *work.item.outputFormat, settings(), context().hasImageMagick);
    return inPool(pool(), [this, item = work.item, output] { return convert(item, output); });
}

FinishJob ConversionBatch::makeFinishJob(const WorkItem& work, const Converted& converted) const {
    FinishJob job;
    job.sourcePath = work.item.path();
    job.source = converted.source;
    job.format = *work.item.outputFormat;
    job.outputPath = outputPath(job.sourcePath, job.format, settings(), context().hasImageMagick);
    job.bytes = converted.bytes;
    if (wantsCompression(job.format, settings()) && engine().hasImageMagick()) {
        job.compression = compressionValue(job.format, settings());
    }
    return job;
}

QFuture<Attempt<FinishedFile>> ConversionBatch::startFinishing(const FinishJob& job) const {
    return inPool(pool(), [this, job] { return finishFile(engine(), job); });
}

void ConversionBatch::showFinished(const WorkItem& work, const FinishedFile& finished) {
    finish(work, [&](FileItem& item) {
        item.convertedSize = finished.convertedSize;
        item.outputSize = finished.outputSize;
        item.wasCompressed = finished.wasCompressed;
    });
}

ConversionBatch::Converted ConversionBatch::convert(const FileItem& item, const QString& output) const {
    const QString path = item.path();
    if (const auto refusal = checkSource(path)) {
        throw ConversionError(*refusal);
    }
    if (const auto refusal = checkDestination(output)) {
        throw ConversionError(*refusal);
    }
    refuseReplacingSource(item, output);
    Converted converted;
    converted.source = fileIdentity(path).value_or(FileIdentity{});
    converted.folder = QDir(parentDirectory(output)).canonicalPath();
    BatchEngine& engines = engine();
    const bool strip = context().removeMetadata;
    switch (*item.inputFormat) {
        case InputFormat::eps:
            converted.bytes = engines.convertEPS(path, *item.outputFormat, strip, conversionQuality);
            break;
        case InputFormat::ai:
            converted.bytes = engines.convertAI(path, *item.outputFormat, conversionQuality);
            break;
        default:
            converted.bytes = engines.convertFile(path, *item.outputFormat, strip, conversionQuality);
            break;
    }
    return converted;
}

}  // namespace sorvik
