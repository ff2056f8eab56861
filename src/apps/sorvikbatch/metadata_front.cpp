#include "apps/sorvikbatch/metadata_front.h"

#include <QFuture>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>
#include <utility>
#include <vector>

#include "apps/sorvikbatch/command_line.h"
#include "apps/sorvikbatch/printable_text.h"
#include "core/vocabulary/formats.h"
#include "core/vocabulary/path_names.h"
#include "engines/source_check.h"
#include "metadata/verbose_parser.h"
#include "metadata/verbose_texts.h"

namespace sorvik {
namespace {

constexpr int filesAtOnce = 2;  // the tool works on several threads itself
const QString gap = QStringLiteral("  ");

QString obstacle(const QString& path) {
    const auto refusal = checkSource(path);
    if (refusal) {
        return refusal->sentence();
    }
    return detectInputFormat(pathExtension(path)) ? QString() : QStringLiteral("Not supported format");
}

/// The entries of a file, under its name where there are several files.
QString section(const MetadataRecord& record, bool withHeading) {
    const QString heading = printable(fileName(record.path).toString());
    return (withHeading ? heading + u'\n' : QString()) + tableText(record);
}

QList<QFuture<MetadataRecord>> startReading(QThreadPool& pool, const QStringList& files) {
    QList<QFuture<MetadataRecord>> records;
    for (const QString& file : files) {
        records << QtConcurrent::run(&pool, readRecord, file);
    }
    return records;
}

}  // namespace

MetadataRecord readRecord(const QString& path) {
    MetadataRecord record{.path = path, .table = {}, .error = obstacle(path)};
    if (!record.error.isEmpty()) {
        return record;
    }
    if (const auto text = VerboseTexts::shared().text(path)) {
        record.table = parseMetadata(*text);
    } else {
        record.error = QStringLiteral("The file could not be read. It may be damaged.");
    }
    return record;
}

QString tableText(const MetadataRecord& record) {
    if (record.table.isEmpty()) {
        return QStringLiteral("No metadata\n");
    }
    qsizetype width = 0;
    for (const QString& label : record.table.keys()) {
        width = std::max(width, printable(label).size());
    }
    QString text;
    for (const auto& [label, value] : record.table.asKeyValueRange()) {
        text += printable(label).leftJustified(width) + gap + printable(value) + u'\n';
    }
    return text;
}

QString jsonLine(const MetadataRecord& record) {
    QJsonObject table;
    for (const auto& [label, value] : record.table.asKeyValueRange()) {
        table.insert(label, value);
    }
    const QJsonObject object{
        {QStringLiteral("path"), record.path},
        {QStringLiteral("metadata"), table},
        {QStringLiteral("error"), record.error.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(record.error)},
    };
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

int showMetadata(const MetadataOptions& options, std::FILE* output, std::FILE* errors) {
    QThreadPool pool;
    pool.setMaxThreadCount(filesAtOnce);
    const bool severalFiles = options.common.files.size() > 1;
    bool allRead = true;
    QString separator;
    for (const QFuture<MetadataRecord>& future : startReading(pool, options.common.files)) {
        const MetadataRecord record = future.result();
        const bool read = record.error.isEmpty();
        allRead = allRead && read;
        if (!read) {
            print(errors, QStringLiteral("sorvikbatch: %1: %2\n").arg(printable(record.path), record.error));
        }
        if (options.common.json) {
            print(output, jsonLine(record) + u'\n');
        } else if (read) {
            print(output, separator + section(record, severalFiles));
            separator = QStringLiteral("\n");
        }
    }
    return allRead && std::ferror(output) == 0 ? statusSuccess : statusRowFailed;
}

}  // namespace sorvik
