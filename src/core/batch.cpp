#include "core/batch.h"

#include <QCoroFuture>
#include <QDir>
#include <QScopeGuard>
#include <QtConcurrent>

#include "core/file_processing_view_model.h"
#include "core/vocabulary/path_names.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr int cacheClearInterval = 10;  // files

QString capitalized(const char* noun) {
    QString word = QString::fromLatin1(noun);
    word[0] = word[0].toUpper();
    return word;
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

Batch::Batch(FileProcessingViewModel& model, bool removeMetadata, const Words& words)
    : model_(model),
      removeMetadata_(removeMetadata),
      words_(words),
      tracker_(QString::fromLatin1(words.tracker), Category::batchProcessing),
      semaphore_(FileProcessingViewModel::maxConcurrentOperations(QThread::idealThreadCount())) {}

void Batch::run() { runAll(); }

QCoro::Task<> Batch::runAll() {
    const auto self = shared_from_this();  // the model may start the next batch before this frame ends
    begin();
    const std::vector<WorkItem> work = collectWork();
    total_ = static_cast<int>(work.size());
    model_.totalCount = total_;
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

void Batch::begin() {
    model_.isConverting = true;
    model_.processingProgress = 0;
    model_.completedCount = 0;
    model_.totalCount = 0;
    model_.currentlyProcessing = QString();
    tracker_.metadata[QStringLiteral("file_count")] = QString::number(model_.files_.size());
    logLine(QStringLiteral("\n📊 Starting %1 batch").arg(QLatin1StringView(words_.noun)));
    model_.monitor_.logMetrics();
}

void Batch::close() {
    model_.engine_.clearResultCache();
    model_.engine_.clearSignatureCache();
    tracker_.metadata[QStringLiteral("success_count")] = QString::number(succeeded_);
    tracker_.metadata[QStringLiteral("failure_count")] = QString::number(failed_);
    tracker_.complete();
    logLine(QStringLiteral("\n📊 %1 batch complete").arg(capitalized(words_.noun)));
    model_.monitor_.logMetrics();
    if (const auto sentence = summary(succeeded_, failed_, cancelled_)) {
        model_.batchCompletionMessage = sentence;
    }
    model_.currentlyProcessing = QString();
    model_.processingProgress = 1.0;
    model_.isConverting = false;
    emit model_.batchEnded(succeeded_, failed_, cancelled_);
}

std::vector<Batch::WorkItem> Batch::collectWork() const {
    std::vector<WorkItem> work;
    for (std::size_t index = 0; index < model_.files_.size(); ++index) {
        const FileItem& item = model_.files_[index];
        if (!item.isProcessed && takes(item)) {
            work.push_back({static_cast<qsizetype>(index), item});
        }
    }
    return work;
}

QFuture<void> Batch::makeFolders() const {
    return QtConcurrent::run(&model_.pool_, [folders = context_.outputDirectories] {
        for (const QString& folder : folders) {
            QDir().mkpath(folder);  // a failure shows in the rows
        }
    });
}

QCoro::Task<> Batch::child(WorkItem work) {
    co_await semaphore_.wait();
    const auto givePermitBack = qScopeGuard([this] { semaphore_.signal(); });
    if (!cancelled_) {
        co_await runRow(work);
    }
}

QCoro::Task<> Batch::runRow(WorkItem work) {
    if (const auto reason = skipReason(work.item)) {
        skip(work, *reason);
    } else {
        const std::optional<ConversionError> error = co_await process(work);
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

std::optional<qsizetype> Batch::indexOf(const WorkItem& work) const { return model_.indexOf(work.item.id, work.index); }

BatchEngine& Batch::engine() const { return model_.engine_; }
QThreadPool& Batch::pool() const { return model_.pool_; }
const AppSettings* Batch::settings() const { return model_.settings_; }

void Batch::showStatus(const WorkItem& work, ConversionStatus status) {
    if (const auto index = indexOf(work)) {
        model_.changeFile(*index, [&](FileItem& item) { item.conversionStatus = status; });
    }
}

void Batch::finish(const WorkItem& work, const std::function<void(FileItem&)>& change) {
    const auto index = indexOf(work);
    if (!index) {
        return;
    }
    // Whoever chose another target meanwhile still waits for it.
    const bool isWanted = model_.files_[static_cast<std::size_t>(*index)].outputFormat == work.item.outputFormat;
    if (isWanted) {
        model_.changeFile(*index, change);
    }
    model_.updateFile(*index, isWanted, std::nullopt);
}

void Batch::skip(const WorkItem& work, const QString& reason) {
    if (const auto index = indexOf(work)) {
        model_.updateFile(*index, false, reason);
        ++failed_;
    }
}

void Batch::countSuccess(const WorkItem& work) {
    if (const auto index = indexOf(work)) {
        const bool clean = !model_.files_[static_cast<std::size_t>(*index)].errorMessage;
        ++(clean ? succeeded_ : failed_);
    }
}

void Batch::countFailure(const WorkItem& work, const ConversionError& error) {
    if (const auto index = indexOf(work)) {
        model_.updateFile(*index, false, QLatin1StringView(words_.failed) + error.sentence());
        ++failed_;
    }
    logLine(QStringLiteral("%1%2: %3").arg(QLatin1StringView(words_.failedLog), work.item.name(), error.description()));
}

void Batch::reportProgress(const QString& name) {
    const int completed = succeeded_ + failed_;
    const auto now = std::chrono::steady_clock::now();
    const bool due = completed % FileProcessingViewModel::updateBatchSize == 0 ||
                     now - lastUpdate_ > FileProcessingViewModel::updateInterval || completed == total_;
    if (!due) {
        return;
    }
    model_.processingProgress = static_cast<double>(completed) / total_;
    model_.completedCount = completed;
    model_.currentlyProcessing = name;
    lastUpdate_ = now;
}

}  // namespace sorvik
