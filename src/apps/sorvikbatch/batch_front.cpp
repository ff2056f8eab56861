#include "apps/sorvikbatch/batch_front.h"

#include <utility>

#include "core/output_naming.h"
#include "platform/defaults_store.h"

namespace sorvik {
namespace {

void print(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

QList<QUrl> urls(const QStringList& files) {
    QList<QUrl> result;
    for (const QString& file : files) {
        result << QUrl::fromLocalFile(file);
    }
    return result;
}

}  // namespace

BatchFront::BatchFront(ConvertOptions options, std::FILE* output, std::FILE* progress, QObject* parent)
    : QObject(parent),
      options_(std::move(options)),
      output_(output),
      progress_(progress),
      settings_(std::make_shared<MemoryDefaultsStore>()),
      model_(engine_) {
    settings_.outputPrefix = options_.outputPrefix;
    settings_.outputSuffix = options_.outputSuffix;
    model_.setSettings(&settings_);
    connect(&model_, &FileProcessingViewModel::filesInserted, this, &BatchFront::convertAll);
    connect(&model_, &FileProcessingViewModel::rowEnded, this, &BatchFront::printRow);
    connect(&model_, &FileProcessingViewModel::batchEnded, this, &BatchFront::end);
}

void BatchFront::start() { model_.handleDrop(urls(options_.files)); }

void BatchFront::convertAll() {
    for (qsizetype index = 0; index < std::ssize(model_.files()); ++index) {
        if (model_.files()[static_cast<std::size_t>(index)].inputFormat) {
            model_.setOutputFormat(index, options_.to);
        }
    }
    report_.emplace(model_.files());
    printProgress();
    model_.startConversion(options_.stripMetadata);
}

void BatchFront::printRow(qsizetype index) {
    const FileItem& row = model_.files()[static_cast<std::size_t>(index)];
    const QString output =
        row.outputFormat ? outputPath(row.path(), *row.outputFormat, &settings_, engine_.hasImageMagick()) : QString();
    clearProgress();
    print(output_, (options_.json ? jsonLine(row, output) : report_->line(row)) + u'\n');
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
    if (summary && !options_.json) {
        print(output_, *summary + u'\n');
    }
    const bool unprinted = std::ferror(output_) != 0;
    if (unprinted) {
        std::fputs("sorvikbatch: the rows could not be printed\n", stderr);
    }
    emit finished(failed > 0 || cancelled || unprinted ? statusRowFailed : statusSuccess);
}

}  // namespace sorvik
