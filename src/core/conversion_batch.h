#pragma once

#include <QCoroTask>
#include <QFuture>
#include <QSet>
#include <QString>
#include <QUuid>

#include <chrono>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "core/app_settings.h"
#include "core/async_semaphore.h"
#include "core/batch_engine.h"
#include "core/file_item.h"
#include "core/finish_conversion.h"
#include "core/output_lanes.h"
#include "platform/files.h"
#include "services/performance_instrumentation.h"

namespace sorvik {

class FileProcessingViewModel;

/// What a batch settles once, at its start.
struct BatchContext {
    bool hasImageMagick = false;
    QSet<QString> outputDirectories;  ///< the parents of all rows
    ProcessingMode processingMode = ProcessingMode::convert;
    bool removeMetadata = false;
    bool compressionEnabled = false;
    QString conversionPrefix;
    QString conversionSuffix;
    QString compressionPrefix;
    QString compressionSuffix;
};

[[nodiscard]] BatchContext makeBatchContext(const std::vector<FileItem>& files, const AppSettings* settings,
                                            bool removeMetadata, bool hasImageMagick);

/// The closing sentence of a conversion; absent when there is nothing to say.
[[nodiscard]] std::optional<QString> conversionSummary(int succeeded, int failed, bool cancelled);

/// The result of work in the pool: a value, or what the work has thrown.
template <typename T>
using Attempt = std::variant<T, ConversionError>;

/// One run over the rows of a view model that are not processed: a child task a row, all made at once and
/// held back by a semaphore. Main context only; the work that blocks runs in the view model's pool.
class ConversionBatch : public std::enable_shared_from_this<ConversionBatch> {
public:
    /// `model` must outlive the batch. To be held by a shared pointer.
    ConversionBatch(FileProcessingViewModel& model, bool removeMetadata);

    /// Starts the batch and returns at its first wait. The model's batchEnded() tells its end.
    void run();

    /// Rows whose turn has not come end without a change.
    void cancel() { cancelled_ = true; }

private:
    struct WorkItem {
        qsizetype index = 0;
        FileItem item;  // as it was when the batch began
    };

    struct Converted {
        QByteArray bytes;
        FileIdentity source;
        QString folder;  // the output's, without links, for the order of equal outputs
    };

    QCoro::Task<> runAll();
    QCoro::Task<> child(WorkItem work);
    QCoro::Task<> runRow(WorkItem work);
    QCoro::Task<std::optional<ConversionError>> processFile(WorkItem work);
    // The coroutines above hold plain values only; what runs in the pool is put together below, since
    // g++ 12 destroys the captures of a lambda twice that stands inside a co_await expression.
    [[nodiscard]] QFuture<void> makeFolders() const;
    [[nodiscard]] QFuture<Attempt<Converted>> startConverting(const WorkItem& work);
    [[nodiscard]] QFuture<Attempt<FinishedFile>> startFinishing(const FinishJob& job) const;
    [[nodiscard]] FinishJob makeFinishJob(const WorkItem& work, const Converted& converted) const;
    void applyFinished(const WorkItem& work, const FinishedFile& finished);
    [[nodiscard]] Converted convert(const FileItem& item, const QString& output) const;

    void begin();
    void close();
    [[nodiscard]] std::vector<WorkItem> collectWork() const;
    [[nodiscard]] std::optional<qsizetype> indexOf(const WorkItem& work) const;
    void skip(const WorkItem& work);
    void countSuccess(const WorkItem& work);
    void countFailure(const WorkItem& work, const ConversionError& error);
    void reportProgress(const QString& name);

    FileProcessingViewModel& model_;
    bool removeMetadata_;
    BatchContext context_;
    OperationTracker tracker_;
    AsyncSemaphore semaphore_;
    OutputLanes lanes_;
    bool cancelled_ = false;
    int total_ = 0;
    int succeeded_ = 0;
    int failed_ = 0;
    std::chrono::steady_clock::time_point lastUpdate_ = std::chrono::steady_clock::now();
};

}  // namespace sorvik
