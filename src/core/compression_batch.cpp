#include "core/compression_batch.h"

#include <QCoroFuture>

#include "core/compression_values.h"
#include "core/file_processing_view_model.h"
#include "core/output_naming.h"

namespace sorvik {

std::optional<QString> compressionSummary(int succeeded, int failed, bool cancelled) {
    if (cancelled) {
        return QStringLiteral("Compression cancelled.");
    }
    if (failed > 0 && succeeded == 0) {
        return QStringLiteral("Compression failed for all files.");
    }
    return succeeded > 0 ? std::optional(QStringLiteral("Compression complete. %1 file(s) succeeded.").arg(succeeded))
                         : std::nullopt;
}

CompressionBatch::CompressionBatch(FileProcessingViewModel& model, bool removeMetadata)
    : Batch(model, removeMetadata,
            {"batch_compression", "compression", "Compression failed: ", "Error compressing file "}) {}

bool CompressionBatch::takes(const FileItem& item) const {
    return item.inputFormat && isCompressible(*item.inputFormat);
}

std::optional<QString> CompressionBatch::skipReason(const FileItem& item) const {
    return item.inputFormat ? std::nullopt
                            : std::optional(QStringLiteral("Skipped: Unsupported format for compression"));
}

std::optional<QString> CompressionBatch::summary(int succeeded, int failed, bool cancelled) const {
    return compressionSummary(succeeded, failed, cancelled);
}

QCoro::Task<std::optional<ConversionError>> CompressionBatch::process(WorkItem work) {
    showStatus(work, ConversionStatus::compressing);
    const std::optional<CompressJob> job = makeJob(work.item);
    if (!job) {
        co_return std::make_optional<ConversionError>();
    }
    const QFuture<Attempt<QString>> checking = startChecking(*job);
    const Attempt<QString> checked = co_await checking;
    if (const auto* error = std::get_if<ConversionError>(&checked)) {
        co_return *error;
    }
    // From reading on: the second of two rows of one file finds what the first has made of it.
    OutputLanes::Pass pass(lanes(), std::get<QString>(checked));
    co_await pass.turn();
    if (!indexOf(work)) {
        co_return std::nullopt;
    }
    const QFuture<Attempt<std::int64_t>> compressing = startCompressing(*job);
    const Attempt<std::int64_t> compressed = co_await compressing;
    if (const auto* error = std::get_if<ConversionError>(&compressed)) {
        co_return *error;
    }
    showFinished(work, std::get<std::int64_t>(compressed));
    co_return std::nullopt;
}

std::optional<CompressJob> CompressionBatch::makeJob(const FileItem& item) const {
    const AppSettings* current = settings();
    if (current == nullptr) {
        return std::nullopt;
    }
    const ImageFormat format = compressedOutputFormat(*item.inputFormat);
    return CompressJob{item.path(), compressedPath(item.path(), format, *current), format,
                       compressionValue(format, current)};
}

QFuture<Attempt<QString>> CompressionBatch::startChecking(const CompressJob& job) const {
    return inPool(pool(), [job] { return checkCompression(job); });
}

QFuture<Attempt<std::int64_t>> CompressionBatch::startCompressing(const CompressJob& job) const {
    return inPool(pool(), [&engine = engine(), job] { return compressFile(engine, job); });
}

void CompressionBatch::showFinished(const WorkItem& work, std::int64_t size) {
    finish(work, [size](FileItem& item) {
        item.outputSize = size;
        item.wasCompressed = true;
    });
}

}  // namespace sorvik
