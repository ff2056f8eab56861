#pragma once

#include <QObject>

#include <cstdio>
#include <optional>
#include <variant>

#include "apps/sorvikbatch/compress_options.h"
#include "apps/sorvikbatch/convert_options.h"
#include "apps/sorvikbatch/row_report.h"
#include "core/app_settings.h"
#include "core/batch_engine.h"
#include "core/file_processing_view_model.h"

namespace sorvik {

/// What a batch is asked to do.
using BatchOptions = std::variant<ConvertOptions, CompressOptions>;

/// The work list without a window: takes the files in, runs one batch and prints its rows as they end. Settings are
/// the defaults and what the command line says, never the user's own.
class BatchFront : public QObject {
    Q_OBJECT

public:
    /// Rows and the summary go to `output`; progress to `progress` unless it is null. Both stay the caller's.
    BatchFront(BatchOptions options, std::FILE* output, std::FILE* progress, QObject* parent = nullptr);

    /// Starts; finished() tells the end.
    void start();

    /// Lets what is in flight end and leaves the rest.
    void cancel() { model_.cancel(); }

signals:
    /// `status` is the exit status.
    void finished(int status);

private:
    void workOff();
    void startBatch(const ConvertOptions& options);
    void startBatch(const CompressOptions& options);
    [[nodiscard]] bool isCompressing() const { return std::holds_alternative<CompressOptions>(options_); }
    [[nodiscard]] FileItem asShown(FileItem row) const;
    [[nodiscard]] QString resultPath(const FileItem& shown);
    void printRow(qsizetype index);
    void printProgress();
    void clearProgress();
    void end(int succeeded, int failed, bool cancelled);

    BatchOptions options_;
    CommonOptions common_;
    std::FILE* output_;
    std::FILE* progress_;
    AppSettings settings_;
    SystemBatchEngine engine_;
    FileProcessingViewModel model_;
    std::optional<RowReport> report_;
    qsizetype ended_ = 0;
    bool anyRefused_ = false;
};

}  // namespace sorvik
