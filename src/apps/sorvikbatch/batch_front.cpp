#include "apps/sorvikbatch/batch_front.h"

#include <memory>
#include <utility>

#include "apps/sorvikbatch/command_line.h"
#include "apps/sorvikbatch/printable_text.h"
#include "core/output_naming.h"
#include "platform/defaults_store.h"

namespace sorvik {
namespace {

QList<QUrl> urls(const QStringList& files) {
    QList<QUrl> result;
    for (const QString& file : files) {
        result << QUrl::fromLocalFile(file);
    }
    return result;
}

void apply(const ConvertOptions& options, AppSettings& settings) {
    settings.outputPrefix = options.outputPrefix;
    settings.outputSuffix = options.outputSuffix;
    settings.convertCompressionEnabled = options.compress;
    applyCompression(options.compression, settings);
}

void apply(const CompressOptions& options, AppSettings& settings) {
    settings.processingMode = ProcessingMode::compress;
    applyCompression(options.compression, settings);
}

bool canBeCompressed(const FileItem& row) { return row.inputFormat && isCompressible(*row.inputFormat); }

}  // namespace

BatchFront::BatchFront(BatchOptions options, std::FILE* output, std::FILE* progress, QObject* parent)
    : QObject(parent),
      options_(std::move(options)),
      common_(std::visit([](const auto& each) { return each.common; }, options_)),
      output_(output),
      progress_(progress),
      settings_(std::make_shared<MemoryDefaultsStore>()),
      model_(engine_) {
    std::visit([this](const auto& each) { apply(each, settings_); }, options_);
    model_.setSettings(&settings_);
    connect(&model_, &FileProcessingViewModel::filesInserted, this, &BatchFront::workOff);
    connect(&model_, &FileProcessingViewModel::rowEnded, this, &BatchFront::printRow);
    connect(&model_, &FileProcessingViewModel::batchEnded, this, &BatchFront::end);
}

void BatchFront::start() { model_.handleDrop(urls(common_.files)); }

void BatchFront::workOff() {
    report_.emplace(model_.files());
    printProgress();
    std::visit([this](const auto& each) { startBatch(each); }, options_);
}

void BatchFront::startBatch(const ConvertOptions& options) {
    for (qsizetype index = 0; index < std::ssize(model_.files()); ++index) {
        if (model_.files()[static_cast<std::size_t>(index)].inputFormat) {
            model_.setOutputFormat(index, options.to);
        }
    }
    model_.startConversion(options.stripMetadata);
}

/// A compression leaves out the rows that it can't take without a word; here they have an end all the same.
void BatchFront::startBatch(const CompressOptions&) {
    for (qsizetype index = 0; index < std::ssize(model_.files()); ++index) {
        if (!canBeCompressed(model_.files()[static_cast<std::size_t>(index)])) {
            anyRefused_ = true;
            printRow(index);
        }
    }
    model_.startCompression(false);
}

/// The target of a row is that of a conversion; a compression has its own.
FileItem BatchFront::asShown(FileItem row) const {
    if (isCompressing()) {
        row.outputFormat =
            canBeCompressed(row) ? std::optional(compressedOutputFormat(*row.inputFormat)) : std::nullopt;
    }
    return row;
}

QString BatchFront::resultPath(const FileItem& shown) {
    if (!shown.outputFormat) {
        return {};
    }
    return isCompressing() ? compressedPath(shown.path(), *shown.outputFormat, settings_)
                           : outputPath(shown.path(), *shown.outputFormat, &settings_, engine_.hasImageMagick());
}

void BatchFront::printRow(qsizetype index) {
    const FileItem row = asShown(model_.files()[static_cast<std::size_t>(index)]);
    clearProgress();
    print(output_, (common_.json ? jsonLine(row, resultPath(row)) : report_->line(row)) + u'\n');
    ++ended_;
    printProgress();
}

void BatchFront::printProgress() {
    if (progress_ != nullptr) {
        print(progress_, QStringLiteral("\r%1 of %2").arg(ended_).arg(model_.files().size()));
    }
}

void BatchFront::clearProgress() {
    if (progress_ != nullptr) {
        print(progress_, QStringLiteral("\r\x1b[K"));
    }
}

void BatchFront::end(int, int failed, bool cancelled) {
    clearProgress();
    const auto summary = model_.batchCompletionMessage.value();
    if (summary && !common_.json) {
        print(output_, *summary + u'\n');
    }
    const bool unprinted = std::ferror(output_) != 0;
    if (unprinted) {
        std::fputs("sorvikbatch: the rows could not be printed\n", stderr);
    }
    emit finished(failed > 0 || anyRefused_ || cancelled || unprinted ? statusRowFailed : statusSuccess);
}

}  // namespace sorvik
