#include "metadata/metadata_utilities.h"

#include "metadata/verbose_parser.h"
#include "metadata/verbose_texts.h"

namespace sorvik {
namespace {

std::optional<QString> verboseText(const QUrl& url) { return VerboseTexts::shared().text(url.toLocalFile()); }

}  // namespace

bool MetadataUtilities::hasMetadata(const QUrl& url) {
    const auto text = verboseText(url);
    return text && holdsMetadata(*text);
}

QMap<QString, QString> MetadataUtilities::readMetadata(const QUrl& url) {
    const auto text = verboseText(url);
    return text ? parseMetadata(*text) : QMap<QString, QString>();
}

}  // namespace sorvik
