#include "core/conversion_batch.h"

#include <QCoroFuture>
#include <QDir>
#include <QScopeGuard>
#include <QtConcurrent>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>
#include <variant>

#include "core/compression_values.h"
#include "core/file_processing_view_model.h"
#include "core/output_naming.h"
#include "core/vocabulary/path_names.h"
#include "engines/source_check.h"
#include "platform/log.h"
#include "services/temporary_files.h"

namespace sorvik {
namespace {

constexpr double conversionQuality = 1.0;
constexpr int cacheClearInterval = 10;  // files

/// Runs work in the pool; what it throws comes back as a value, since it has to cross threads.
template <typename Work>
QFuture<Attempt<std::invoke_result_t<Work>>> inPool(QThreadPool& pool, Work work) {
    using Result = Attempt<std::invoke_result_t<Work>>;
    return QtConcurrent::run(&pool, [work = std::move(work)]() -> Result {
        try {
            return work();
        } catch (const ConversionError& error) {
            return error;
        } catch (const TemporaryFileError& error) {
            return ConversionError(QString::fromUtf8(error.what()));
        } catch (const std::bad_alloc&) {
            return ConversionError(QStringLiteral("Cannot allocate memory"));
        } catch (const std::exception& error) {
            return ConversionError(QString::fromUtf8(error.what()));  // a row ends, whatever has happened
        }
    });
}

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

BatchContext makeBatchContext(const std::vector<FileItem>& files, const AppSettings* settings, bool removeMetadata,
                              bool hasImageMagick) {
    BatchContext context;
    context.hasImageMagick = hasImageMagick;
    context.removeMetadata = removeMetadata;
    for (const FileItem& item : files) {
        context.outputDirectories.insert(parentDirectory(item.path()));
    }
    if (settings != nullptr) {
        context.processingMode = settings->processingMode;
        context.compressionEnabled =
            settings->processingMode == ProcessingMode::compress || settings->convertCompressionEnabled;
        context.conversionPrefix = settings->outputPrefix;
        context.conversionSuffix = settings->outputSuffix;
        context.compressionPrefix = settings->compressionPrefix;
        context.compressionSuffix = settings->compressionSuffix;
    }
    return context;
}

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
    : model_(model),
      removeMetadata_(removeMetadata),
      tracker_(QStringLiteral("batch_conversion"), Category::batchProcessing),
      semaphore_(FileProcessingViewModel::maxConcurrentOperations(QThread::idealThreadCount())) {}

void ConversionBatch::run() { runAll(); }

QCoro::Task<> ConversionBatch::runAll() {
    const auto self = shared_from_this();  // the model may start the next batch before this frame ends
    begin();
    const std::vector<WorkItem> work = collectWork();
    total_ = static_cast<int>(work.size());
    context_ = makeBatchContext(model_.files_, model_.settings_, removeMetadata_, model_.engine_.hasImageMagick());
    const QFuture<void> folders = makeFolders();
    co_await folders;
    std::vector<QCoro::Task<>> children;
    children.reserve(work.size());
    for (const WorkItem& item : work) {
        if (cancelled_) {
            break;
        }
        children.push_back(child(item));
    }
    for (QCoro::Task<>& task : children) {
        co_await task;
    }
    close();
}

void ConversionBatch::begin() {
    model_.isConverting = true;
    model_.processingProgress = 0;
    model_.currentlyProcessing = QString();
    tracker_.metadata[QStringLiteral("file_count")] = QString::number(model_.files_.size());
    logLine(QStringLiteral("\n📊 Starting conversion batch"));
}

void ConversionBatch::close() {
    model_.engine_.clearResultCache();
    model_.engine_.clearSignatureCache();
    tracker_.metadata[QStringLiteral("success_count")] = QString::number(succeeded_);
    tracker_.metadata[QStringLiteral("failure_count")] = QString::number(failed_);
    tracker_.complete();
    logLine(QStringLiteral("\n📊 Conversion batch complete"));
    if (const auto summary = conversionSummary(succeeded_, failed_, cancelled_)) {
        model_.batchCompletionMessage = summary;
    }
    model_.currentlyProcessing = QString();
    model_.processingProgress = 1.0;
    model_.isConverting = false;
    emit model_.batchEnded(succeeded_, failed_, cancelled_);
}

std::vector<ConversionBatch::WorkItem> ConversionBatch::collectWork() const {
    std::vector<WorkItem> work;
    for (std::size_t index = 0; index < model_.files_.size(); ++index) {
        if (!model_.files_[index].isProcessed) {
            work.push_back({static_cast<qsizetype>(index), model_.files_[index]});
        }
    }
    return work;
}

std::optional<qsizetype> ConversionBatch::indexOf(const WorkItem& work) const {
    return model_.indexOf(work.item.id, work.index);
}

QFuture<void> ConversionBatch::makeFolders() const {
    return QtConcurrent::run(&model_.pool_, [folders = context_.outputDirectories] {
        for (const QString& folder : folders) {
            QDir().mkpath(folder);  // a failure shows in the rows
        }
    });
}

QCoro::Task<> ConversionBatch::child(WorkItem work) {
    co_await semaphore_.wait();
    const auto givePermitBack = qScopeGuard([this] { semaphore_.signal(); });
    if (!cancelled_) {
        co_await runRow(work);
    }
}

QCoro::Task<> ConversionBatch::runRow(WorkItem work) {
    if (!work.item.inputFormat || !work.item.outputFormat) {
        skip(work);
    } else {
        const std::optional<ConversionError> error = co_await processFile(work);
        if (error) {
            countFailure(work, *error);
        } else {
            countSuccess(work);
        }
    }
    reportProgress(work.item.name());
    const int completed = succeeded_ + failed_;
    if (completed > 0 && completed % cacheClearInterval == 0) {
        model_.engine_.clearResultCache();
    }
    if (const auto index = indexOf(work)) {
        emit model_.rowEnded(*index);
    }
}

QCoro::Task<std::optional<ConversionError>> ConversionBatch::processFile(WorkItem work) {
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
    OutputLanes::Pass pass(lanes_, converted.folder + u'/' + fileName(job.outputPath).toString());
    co_await pass.turn();
    if (!indexOf(work)) {
        co_return std::nullopt;
    }
    const QFuture<Attempt<FinishedFile>> finishing = startFinishing(job);
    const Attempt<FinishedFile> finished = co_await finishing;
    if (const auto* error = std::get_if<ConversionError>(&finished)) {
        co_return *error;
    }
    applyFinished(work, std::get<FinishedFile>(finished));
    co_return std::nullopt;
}

QFuture<Attempt<ConversionBatch::Converted>> ConversionBatch::startConverting(const WorkItem& work) {
    if (const auto index = indexOf(work)) {
        model_.changeFile(*index, [](FileItem& item) { item.conversionStatus = ConversionStatus::converting; });
    }
    const QString output =
        outputPath(work.item.path(), *work.item.outputFormat, model_.settings_, context_.hasImageMagick);
    return inPool(model_.pool_, [this, item = work.item, output] { return convert(item, output); });
}

FinishJob ConversionBatch::makeFinishJob(const WorkItem& work, const Converted& converted) const {
    FinishJob job;
    job.sourcePath = work.item.path();
    job.source = converted.source;
    job.format = *work.item.outputFormat;
    job.outputPath = outputPath(job.sourcePath, job.format, model_.settings_, context_.hasImageMagick);
    job.bytes = converted.bytes;
    if (wantsCompression(job.format, model_.settings_) && model_.engine_.hasImageMagick()) {
        job.compression = compressionValue(job.format, model_.settings_);
    }
    return job;
}

QFuture<Attempt<FinishedFile>> ConversionBatch::startFinishing(const FinishJob& job) const {
    return inPool(model_.pool_, [this, job] { return finishFile(model_.engine_, job); });
}

void ConversionBatch::applyFinished(const WorkItem& work, const FinishedFile& finished) {
    if (const auto index = indexOf(work)) {
        model_.changeFile(*index, [&](FileItem& item) {
            item.convertedSize = finished.convertedSize;
            item.outputSize = finished.outputSize;
            item.wasCompressed = finished.wasCompressed;
        });
        model_.updateFile(*index, true, std::nullopt);
    }
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
    BatchEngine& engine = model_.engine_;
    const bool strip = context_.removeMetadata;
    switch (*item.inputFormat) {
        case InputFormat::eps:
            converted.bytes = engine.convertEPS(path, *item.outputFormat, strip, conversionQuality);
            break;
        case InputFormat::ai:
            converted.bytes = engine.convertAI(path, *item.outputFormat, conversionQuality);
            break;
        default:
            converted.bytes = engine.convertFile(path, *item.outputFormat, strip, conversionQuality);
            break;
    }
    return converted;
}

void ConversionBatch::skip(const WorkItem& work) {
    if (const auto index = indexOf(work)) {
        model_.updateFile(*index, false,
                          work.item.inputFormat ? QStringLiteral("Skipped: Output format not selected")
                                                : QStringLiteral("Skipped: Invalid input format"));
        ++failed_;
    }
}

void ConversionBatch::countSuccess(const WorkItem& work) {
    if (const auto index = indexOf(work)) {
        const bool clean = !model_.files_[static_cast<std::size_t>(*index)].errorMessage;
        ++(clean ? succeeded_ : failed_);
    }
}

void ConversionBatch::countFailure(const WorkItem& work, const ConversionError& error) {
    if (const auto index = indexOf(work)) {
        model_.updateFile(*index, false, QStringLiteral("Processing failed: ") + error.sentence());
        ++failed_;
    }
    logLine(QStringLiteral("Error processing file %1: %2").arg(work.item.name(), error.description()));
}

void ConversionBatch::reportProgress(const QString& name) {
    const int completed = succeeded_ + failed_;
    const auto now = std::chrono::steady_clock::now();
    const bool due = completed % FileProcessingViewModel::updateBatchSize == 0 ||
                     now - lastUpdate_ > FileProcessingViewModel::updateInterval || completed == total_;
    if (!due) {
        return;
    }
    model_.processingProgress = static_cast<double>(completed) / total_;
    model_.currentlyProcessing = name;
    lastUpdate_ = now;
}

}  // namespace sorvik
