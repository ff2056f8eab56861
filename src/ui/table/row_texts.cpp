#include "ui/table/row_texts.h"

#include "platform/byte_count.h"

namespace sorvik {
namespace {

QString capitalized(QString word) {
    word[0] = word[0].toUpper();
    return word;
}

}  // namespace

QString noValue() { return QStringLiteral("-"); }

QString sizeText(const FileItem& item) { return item.outputSize ? formatByteCount(*item.outputSize) : noValue(); }
QString savingText(const FileItem& item) { return item.savingsText().value_or(noValue()); }
QString inputText(const FileItem& item) { return item.inputFormat ? rawValue(*item.inputFormat) : noValue(); }

std::span<const ImageFormat> offeredFormats(const FileItem& item) {
    return item.inputFormat ? supportedOutputFormats(*item.inputFormat) : std::span<const ImageFormat>();
}

ImageFormat shownFormat(const FileItem& item) {
    const auto offered = offeredFormats(item);
    return item.outputFormat.value_or(offered.empty() ? ImageFormat::jpeg : offered.front());
}

StatusLook statusLook(const FileItem& item, bool isConverting) {
    using enum StatusLook::Kind;
    if (!item.inputFormat) {
        return {invalid, QStringLiteral("Invalid format")};
    }
    if (item.isProcessed) {
        return {done, QStringLiteral("Done")};
    }
    if (!isConverting) {
        return {waiting, QStringLiteral("Waiting")};
    }
    return {busy, capitalized(rawValue(item.conversionStatus))};
}

}  // namespace sorvik
