#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QProperty>
#include <QSet>
#include <QThreadPool>
#include <QUrl>
#include <QUuid>

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "core/app_settings.h"
#include "core/batch_engine.h"
#include "core/file_item.h"
#include "services/memory_pressure_monitor.h"

namespace sorvik {

class Batch;

/// Owns the list of rows and runs batches over it. Main context only; rows are changed nowhere else.
class FileProcessingViewModel : public QObject {
    Q_OBJECT

public:
    static constexpr int updateBatchSize = 5;                        ///< files between two reports of progress ...
    static constexpr std::chrono::milliseconds updateInterval{500};  ///< ... unless this much time has passed

    /// `engine` and `monitor` must outlive the object. Starts the monitor.
    explicit FileProcessingViewModel(BatchEngine& engine, QObject* parent = nullptr,
                                     MemoryPressureMonitor& monitor = MemoryPressureMonitor::shared());

    /// Finishes.
    ~FileProcessingViewModel() override;

    /// Cancels a batch that runs and waits for the files in flight; events are handled meanwhile. Who follows the
    /// list calls it before it goes itself.
    void finish();

    /// Files in flight at once: three quarters of the processors, 2 at least and 8 at most.
    [[nodiscard]] static int maxConcurrentOperations(int processors);

    // Observable state.
    QProperty<bool> isConverting{false};
    QProperty<double> processingProgress{0};  ///< 0 to 1
    QProperty<int> completedCount{0};         ///< files of the batch that have ended, told as often as the progress
    QProperty<int> totalCount{0};             ///< files of the batch
    QProperty<QString> currentlyProcessing;   ///< the name of the file that ended last
    QProperty<std::optional<QString>> batchCompletionMessage;
    QProperty<QSet<QUuid>> selection;  ///< the rows highlighted in the table

    [[nodiscard]] const std::vector<FileItem>& files() const { return files_; }

    /// The rows that are checked; may hold ids of rows that are gone.
    [[nodiscard]] const QSet<QUuid>& selectedFiles() const { return selectedFiles_; }
    [[nodiscard]] const std::vector<FileItem>& selectedFileItems() const { return selectedFileItems_; }
    [[nodiscard]] const std::set<InputFormat>& selectedFormats() const { return selectedFormats_; }

    /// The output formats on offer for all checked rows, in the order of one of their lists.
    [[nodiscard]] const std::vector<ImageFormat>& commonOutputFormats() const { return commonOutputFormats_; }

    [[nodiscard]] AppSettings* settings() const { return settings_; }

    /// The object stays the caller's; none means defaults that change nothing.
    void setSettings(AppSettings* settings) { settings_ = settings; }

    /// Turns URLs into rows, in their order, off the main thread; filesInserted() tells when they stand. A list that
    /// is cleared meanwhile takes none of them. Always true.
    bool handleDrop(const QList<QUrl>& urls);

    void updateSelection(const QSet<QUuid>& checked);
    void refreshSelectionState();

    /// Checks or unchecks a row. Checked rows share one input format: checking a row unchecks all of other formats.
    void setChecked(qsizetype index, bool checked);

    /// Checks all rows of the format that the checked ones have; nothing when none is checked.
    void checkAllOfSelectedFormat();
    void clearChecked();

    /// Gives all checked rows a target, which makes them ready for another run, and unchecks them.
    void updateChecked(ImageFormat format);

    /// A row's own choice of target; a finished or failed row is then ready for another run.
    void setOutputFormat(qsizetype index, ImageFormat format);

    /// The same for a row that may be gone or have moved.
    void setOutputFormat(const QUuid& id, ImageFormat format);

    /// Makes every row ready for another run.
    void resetAll();
    void clearAll();

    /// Removes the highlighted rows, unless a batch runs.
    void deleteSelected();

    /// Runs all rows that are not processed. Nothing with an empty list or while a batch runs.
    void startConversion(bool removeMetadata);

    /// Shrinks all rows that are not processed and whose format has a recipe; the others are left out without
    /// a word. Nothing with an empty list or while a batch runs. The flag changes nothing: a recipe
    /// always leaves metadata out.
    void startCompression(bool removeMetadata);

    /// Lets the running batch end early: what is in flight is finished, the rest stays as it is.
    void cancel();

    /// Ends a row's run: done, or waiting again with what went wrong.
    void updateFile(qsizetype index, bool isProcessed, const std::optional<QString>& errorMessage);

signals:
    void filesInserted(qsizetype first, qsizetype count);
    void fileChanged(qsizetype index);

    /// The rows are the same, but each may have changed.
    void allFilesChanged();

    /// Rows went.
    void filesReset();
    void selectionStateChanged();

    /// A row of the running batch has ended, whichever way.
    void rowEnded(qsizetype index);
    void batchEnded(int succeeded, int failed, bool cancelled);

private:
    friend class Batch;

    void addFiles(std::vector<FileItem> items, ProcessingMode mode);
    void startCompressionSoon();
    void respondToPressure(PressureLevel level);

    /// Changes one row and says so.
    template <typename Change>
    void changeFile(qsizetype index, Change change) {
        change(files_[static_cast<std::size_t>(index)]);
        emit fileChanged(index);
    }

    /// Where a row stands now: at its index still, or nowhere.
    [[nodiscard]] std::optional<qsizetype> indexOf(const QUuid& id, qsizetype index) const;

    BatchEngine& engine_;
    MemoryPressureMonitor& monitor_;
    QPointer<AppSettings> settings_;
    std::vector<FileItem> files_;
    QSet<QUuid> selectedFiles_;
    std::vector<FileItem> selectedFileItems_;
    std::set<InputFormat> selectedFormats_;
    std::vector<ImageFormat> commonOutputFormats_;
    int generation_ = 0;  // of the list; a drop that was read for an earlier one comes too late
    QThreadPool pool_;
    std::shared_ptr<Batch> batch_;
};

}  // namespace sorvik
