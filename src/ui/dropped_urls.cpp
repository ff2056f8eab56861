#include "ui/dropped_urls.h"

namespace sorvik {

QList<QUrl> droppedFiles(const QMimeData* data) {
    QList<QUrl> urls = data != nullptr && data->hasUrls() ? data->urls() : QList<QUrl>();
    urls.removeIf([](const QUrl& url) { return !url.isLocalFile(); });
    return urls;
}

}  // namespace sorvik
