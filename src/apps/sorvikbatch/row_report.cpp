#include "apps/sorvikbatch/row_report.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

#include "apps/sorvikbatch/printable_text.h"
#include "platform/byte_count.h"

namespace sorvik {
namespace {

constexpr qsizetype widestName = 48;  // characters; longer names push their line to the right
constexpr qsizetype formatWidth = 4;  // of the longest raw value
constexpr qsizetype sizeWidth = 10;   // of "1023 bytes"
constexpr qsizetype savingWidth = 6;  // of "100.0%"
const QString none = QStringLiteral("-");

QString outcome(const FileItem& row) { return row.errorMessage ? *row.errorMessage : rawValue(row.conversionStatus); }

template <typename Format>
QString formatText(const std::optional<Format>& format) {
    return format ? rawValue(*format) : none;
}

template <typename Value>
QJsonValue jsonValue(const std::optional<Value>& value) {
    if (!value) {
        return QJsonValue::Null;
    }
    if constexpr (std::is_integral_v<Value>) {
        return static_cast<qint64>(*value);
    } else {
        return *value;
    }
}

template <typename Format>
QJsonValue jsonFormat(const std::optional<Format>& format) {
    return format ? QJsonValue(rawValue(*format)) : QJsonValue(QJsonValue::Null);
}

}  // namespace

RowReport::RowReport(const std::vector<FileItem>& rows) {
    for (const FileItem& row : rows) {
        nameWidth_ = std::max(nameWidth_, printable(row.name()).size());
    }
    nameWidth_ = std::min(nameWidth_, widestName);
}

QString RowReport::line(const FileItem& row) const {
    QStringList columns{printable(row.name()).leftJustified(nameWidth_),
                        formatText(row.inputFormat).leftJustified(formatWidth),
                        formatText(row.outputFormat).leftJustified(formatWidth), outcome(row)};
    const auto saving = row.savingsText();
    if (row.isProcessed && row.outputSize) {
        columns << formatByteCount(*row.outputSize).leftJustified(saving ? sizeWidth : 0);
    }
    if (saving) {
        columns << saving->rightJustified(savingWidth);
    }
    return columns.join(QStringLiteral("  "));
}

QString jsonLine(const FileItem& row, const QString& outputPath) {
    const QJsonObject object{
        {QStringLiteral("name"), row.name()},
        {QStringLiteral("path"), row.path()},
        {QStringLiteral("from"), jsonFormat(row.inputFormat)},
        {QStringLiteral("to"), jsonFormat(row.outputFormat)},
        {QStringLiteral("status"), row.isProcessed ? QStringLiteral("done") : QStringLiteral("failed")},
        {QStringLiteral("error"), jsonValue(row.errorMessage)},
        {QStringLiteral("outputPath"), row.isProcessed ? QJsonValue(outputPath) : QJsonValue(QJsonValue::Null)},
        {QStringLiteral("originalSize"), static_cast<qint64>(row.originalSize)},
        {QStringLiteral("outputSize"), jsonValue(row.outputSize)},
        {QStringLiteral("convertedSize"), jsonValue(row.convertedSize)},
        {QStringLiteral("saving"), jsonValue(row.savingsText())},
    };
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

}  // namespace sorvik
