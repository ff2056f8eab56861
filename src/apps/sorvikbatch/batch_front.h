#pragma once

#include <QObject>

#include <cstdio>
#include <memory>
#include <optional>

#include "apps/sorvikbatch/batch_options.h"
#include "apps/sorvikbatch/row_report.h"
#include "core/app_settings.h"
#include "core/batch_engine.h"
#include "core/file_processing_view_model.h"

namespace sorvik {

/// The work list without a window: takes the files in, runs one conversion batch and prints its rows as they
/// end. Settings are the defaults and what the command line says, never the user's own.
class BatchFront : public QObject {
    Q_OBJECT

public:
    /// Rows and the summary go to `output`; progress to `progress` unless it is null. Both stay the caller's.
    BatchFront(ConvertOptions options, std::FILE* output, std::FILE* progress, QObject* parent = nullptr);

    /// Starts; finished() tells the end.
    void start();

    /// Lets what is in flight end and leaves the rest.
    void cancel() { model_.cancel(); }

signals:
    /// `status` is the exit status.
    void finished(int status);

private:
    void convertAll();
    void printRow(qsizetype index);
    void printProgress();
    void clearProgress();
    void end(int succeeded, int failed, bool cancelled);

    ConvertOptions options_;
    std::FILE* output_;
    std::FILE* progress_;
    AppSettings settings_;
    SystemBatchEngine engine_;
    FileProcessingViewModel model_;
    std::optional<RowReport> report_;
    qsizetype ended_ = 0;
};

}  // namespace sorvik
