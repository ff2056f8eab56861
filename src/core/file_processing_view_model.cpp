#include "core/file_processing_view_model.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <QtConcurrent>

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/compression_batch.h"
#include "core/conversion_batch.h"
#include "core/format_mapping_reader.h"
#include "core/intake.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr int fewestInFlight = 2;
constexpr int mostInFlight = 8;
constexpr std::chrono::milliseconds autoCompressionDelay{100};

/// What all of the formats' lists hold, in the order of the first one's.
std::vector<ImageFormat> commonOutputs(const std::set<InputFormat>& inputs) {
    std::vector<ImageFormat> common;
    if (!inputs.empty()) {
        std::ranges::copy_if(supportedOutputFormats(*inputs.begin()), std::back_inserter(common),
                             [&](ImageFormat output) {
                                 return std::ranges::all_of(inputs, [&](InputFormat input) {
                                     const auto offered = supportedOutputFormats(input);
                                     return std::ranges::find(offered, output) != offered.end();
                                 });
                             });
    }
    return common;
}

std::vector<FileItem> makeFileItems(const QList<QUrl>& urls, ProcessingMode mode, const FormatResolver& targets) {
    std::vector<FileItem> items;
    items.reserve(static_cast<std::size_t>(urls.size()));
    for (const QUrl& url : urls) {
        if (!url.isEmpty()) {
            items.push_back(makeFileItem(url, mode, targets));
        }
    }
    return items;
}

}  // namespace

FileProcessingViewModel::FileProcessingViewModel(BatchEngine& engine, QObject* parent, MemoryPressureMonitor& monitor)
    : QObject(parent), engine_(engine), monitor_(monitor) {
    // One thread more than files in flight, so that a drop is read while a batch runs.
    pool_.setMaxThreadCount(maxConcurrentOperations(QThread::idealThreadCount()) + 1);
    monitor_.addCleanupHandler(*this, [this](PressureLevel level) {
        QMetaObject::invokeMethod(
            this, [this, level] { respondToPressure(level); }, Qt::QueuedConnection);
    });
    monitor_.startMonitoring();
}

FileProcessingViewModel::~FileProcessingViewModel() { finish(); }

void FileProcessingViewModel::finish() {
    cancel();
    while (isConverting) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

int FileProcessingViewModel::maxConcurrentOperations(int processors) {
    return std::clamp(processors * 3 / 4, fewestInFlight, mostInFlight);
}

bool FileProcessingViewModel::handleDrop(const QList<QUrl>& urls) {
    const ProcessingMode mode = settings_ != nullptr ? settings_->processingMode.value() : ProcessingMode::convert;
    const FormatResolver targets =
        settings_ != nullptr ? FormatResolver(FormatMappingReader(settings_->store()).allMappings()) : FormatResolver();
    QtConcurrent::run(&pool_, [urls, mode, targets] {
        return makeFileItems(urls, mode, targets);
    }).then(this, [this, mode, generation = generation_](std::vector<FileItem> items) {
        if (generation == generation_) {
            addFiles(std::move(items), mode);
        }
    });
    return true;
}

void FileProcessingViewModel::addFiles(std::vector<FileItem> items, ProcessingMode mode) {
    const auto first = static_cast<qsizetype>(files_.size());
    const auto count = static_cast<qsizetype>(items.size());
    std::ranges::move(items, std::back_inserter(files_));
    emit filesInserted(first, count);
    refreshSelectionState();
    const bool startsItself = mode == ProcessingMode::compress && settings_ != nullptr &&
                              settings_->autoCompressionEnabled && count > 0 && !isConverting;
    if (startsItself) {
        startCompressionSoon();
    }
}

/// Not over a list that has been cleared meanwhile: that one is of another mode.
void FileProcessingViewModel::startCompressionSoon() {
    QTimer::singleShot(autoCompressionDelay, this, [this, generation = generation_] {
        if (generation == generation_) {
            startCompression(settings_ != nullptr && settings_->removeMetadata);
        }
    });
}

void FileProcessingViewModel::respondToPressure(PressureLevel level) {
    logLine(QStringLiteral("📊 FileProcessingViewModel: Responding to ") + displayName(level) +
            QStringLiteral(" memory pressure"));
    engine_.clearResultCache();
    engine_.clearSignatureCache();
    if (level == PressureLevel::critical) {
        batchCompletionMessage = std::nullopt;
        logLine(QStringLiteral("   Cleared caches and temporary data"));
    }
}

void FileProcessingViewModel::updateSelection(const QSet<QUuid>& checked) {
    selectedFiles_ = checked;
    for (std::size_t index = 0; index < files_.size(); ++index) {
        const bool isSelected = checked.contains(files_[index].id);
        if (files_[index].isSelected != isSelected) {
            changeFile(static_cast<qsizetype>(index), [&](FileItem& item) { item.isSelected = isSelected; });
        }
    }
    refreshSelectionState();
}

void FileProcessingViewModel::refreshSelectionState() {
    selectedFileItems_.clear();
    std::ranges::copy_if(files_, std::back_inserter(selectedFileItems_),
                         [&](const FileItem& item) { return selectedFiles_.contains(item.id); });
    selectedFormats_.clear();
    for (const FileItem& item : selectedFileItems_) {
        if (item.inputFormat) {
            selectedFormats_.insert(*item.inputFormat);
        }
    }
    commonOutputFormats_ = commonOutputs(selectedFormats_);
    emit selectionStateChanged();
}

void FileProcessingViewModel::setChecked(qsizetype index, bool checked) {
    const FileItem& row = files_.at(static_cast<std::size_t>(index));
    QSet<QUuid> ids = selectedFiles_;
    if (!checked) {
        ids.remove(row.id);
    } else {
        ids.insert(row.id);
        for (const FileItem& other : files_) {
            if (row.inputFormat && other.inputFormat && *other.inputFormat != *row.inputFormat) {
                ids.remove(other.id);
            }
        }
    }
    updateSelection(ids);
}

void FileProcessingViewModel::checkAllOfSelectedFormat() {
    if (selectedFormats_.empty()) {
        return;
    }
    QSet<QUuid> ids = selectedFiles_;
    for (const FileItem& item : files_) {
        if (item.inputFormat == *selectedFormats_.begin()) {
            ids.insert(item.id);
        }
    }
    updateSelection(ids);
}

void FileProcessingViewModel::clearChecked() { updateSelection({}); }

void FileProcessingViewModel::updateChecked(ImageFormat format) {
    for (std::size_t index = 0; index < files_.size(); ++index) {
        if (selectedFiles_.contains(files_[index].id)) {
            setOutputFormat(static_cast<qsizetype>(index), format);
        }
    }
    clearChecked();
}

void FileProcessingViewModel::setOutputFormat(qsizetype index, ImageFormat format) {
    if (index >= 0 && index < std::ssize(files_)) {
        changeFile(index, [&](FileItem& item) {
            item.outputFormat = format;
            item.isProcessed = false;
            item.errorMessage.reset();
        });
    }
}

void FileProcessingViewModel::setOutputFormat(const QUuid& id, ImageFormat format) {
    setOutputFormat(std::ranges::find(files_, id, &FileItem::id) - files_.begin(), format);
}

void FileProcessingViewModel::resetAll() {
    for (FileItem& item : files_) {
        item.isProcessed = false;
        item.errorMessage.reset();
        item.outputSize.reset();
        item.conversionStatus = ConversionStatus::waiting;
        item.wasCompressed = false;
    }
    emit allFilesChanged();
}

void FileProcessingViewModel::clearAll() {
    ++generation_;
    files_.clear();
    selection = QSet<QUuid>();
    selectedFiles_.clear();
    batchCompletionMessage = std::nullopt;
    emit filesReset();
}

void FileProcessingViewModel::deleteSelected() {
    if (isConverting) {
        logLine(QStringLiteral("Warning: Cannot delete files during conversion process"));
        return;
    }
    std::erase_if(files_, [&](const FileItem& item) { return selection.value().contains(item.id); });
    selection = QSet<QUuid>();
    emit filesReset();
    refreshSelectionState();
}

void FileProcessingViewModel::startConversion(bool removeMetadata) {
    if (files_.empty() || isConverting) {
        return;
    }
    batch_ = std::make_shared<ConversionBatch>(*this, removeMetadata);
    batch_->run();
}

void FileProcessingViewModel::startCompression(bool removeMetadata) {
    if (files_.empty() || isConverting) {
        return;
    }
    batch_ = std::make_shared<CompressionBatch>(*this, removeMetadata);
    batch_->run();
}

void FileProcessingViewModel::cancel() {
    if (batch_) {
        batch_->cancel();
    }
}

std::optional<qsizetype> FileProcessingViewModel::indexOf(const QUuid& id, qsizetype index) const {
    const bool stands = index >= 0 && index < std::ssize(files_) && files_[static_cast<std::size_t>(index)].id == id;
    return stands ? std::optional(index) : std::nullopt;
}

void FileProcessingViewModel::updateFile(qsizetype index, bool isProcessed,
                                         const std::optional<QString>& errorMessage) {
    if (index < 0 || index >= std::ssize(files_)) {
        logLine(QStringLiteral("Warning: Attempted to modify file at invalid index %1").arg(index));
        return;
    }
    changeFile(index, [&](FileItem& item) {
        item.isProcessed = isProcessed;
        item.errorMessage = errorMessage;
        item.conversionStatus = isProcessed ? ConversionStatus::done : ConversionStatus::waiting;
    });
}

}  // namespace sorvik
