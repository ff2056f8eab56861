#pragma once

#include <QCoroTask>
#include <QFuture>
#include <QSet>
#include <QString>
#include <QThreadPool>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/app_settings.h"
#include "core/async_semaphore.h"
#include "core/file_item.h"
#include "core/output_lanes.h"
#include "engines/conversion_error.h"
#include "services/performance_instrumentation.h"

namespace sorvik {

class BatchEngine;
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

/// One run over the rows of a view model: a child task a row, all made at once and held back by a semaphore. What is
/// done with a row is the derived class's. Main context only; work that blocks runs in the view model's pool.
class Batch : public std::enable_shared_from_this<Batch> {
public:
    virtual ~Batch() = default;
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    /// Starts the batch and returns at its first wait. The model's batchEnded() tells its end.
    void run();

    /// Rows whose turn has not come end without a change.
    void cancel() { cancelled_ = true; }

protected:
    /// How a kind of batch speaks of itself.
    struct Words {
        const char* tracker;    ///< the timing's name
        const char* noun;       ///< of the log lines: "conversion"
        const char* failed;     ///< in front of a row's sentence: "Processing failed: "
        const char* failedLog;  ///< in front of the file's name: "Error processing file "
    };

    struct WorkItem {
        qsizetype index = 0;
        FileItem item;  // as it was when the batch began
    };

    /// `model` must outlive the batch. To be held by a shared pointer.
    Batch(FileProcessingViewModel& model, bool removeMetadata, const Words& words);

    /// Whether a row that is not processed is part of the batch.
    [[nodiscard]] virtual bool takes(const FileItem& item) const = 0;

    /// Why a row of the batch can't be worked on; it then counts as a failure.
    [[nodiscard]] virtual std::optional<QString> skipReason(const FileItem& item) const = 0;

    /// Does one row, which holds a permit meanwhile. Absent result means success. The coroutine must hold plain
    /// values only; what runs in the pool is put together in plain functions, since g++ 12 destroys the
    /// captures of a lambda twice that stands inside a co_await expression.
    virtual QCoro::Task<std::optional<ConversionError>> process(WorkItem work) = 0;

    /// The closing sentence; absent when there is nothing to say.
    [[nodiscard]] virtual std::optional<QString> summary(int succeeded, int failed, bool cancelled) const = 0;

    [[nodiscard]] BatchEngine& engine() const;
    [[nodiscard]] QThreadPool& pool() const;
    [[nodiscard]] const AppSettings* settings() const;
    [[nodiscard]] const BatchContext& context() const { return context_; }
    [[nodiscard]] OutputLanes& lanes() { return lanes_; }

    /// Where the row stands now; absent when it is gone.
    [[nodiscard]] std::optional<qsizetype> indexOf(const WorkItem& work) const;

    /// Shows a row's stage while it is worked on.
    void showStatus(const WorkItem& work, ConversionStatus status);

    /// Changes the row, if it still stands, and ends it as done.
    void finish(const WorkItem& work, const std::function<void(FileItem&)>& change);

private:
    QCoro::Task<> runAll();
    QCoro::Task<> child(WorkItem work);
    QCoro::Task<> runRow(WorkItem work);
    [[nodiscard]] QFuture<void> makeFolders() const;
    [[nodiscard]] std::vector<WorkItem> collectWork() const;
    void begin();
    void close();
    void skip(const WorkItem& work, const QString& reason);
    void countSuccess(const WorkItem& work);
    void countFailure(const WorkItem& work, const ConversionError& error);
    void reportProgress(const QString& name);

    FileProcessingViewModel& model_;
    bool removeMetadata_;
    Words words_;
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
