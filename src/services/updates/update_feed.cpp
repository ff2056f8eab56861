#include "services/updates/update_feed.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVersionNumber>

namespace sorvik {
namespace {

constexpr qsizetype notesLimit = 4000;  // characters; more than a dialog shows

bool isHttpsPage(const QUrl& url) {
    return url.isValid() && url.scheme() == QLatin1String("https") && !url.host().isEmpty();
}

bool isVersion(const QString& text) {
    qsizetype end = 0;
    const QVersionNumber version = QVersionNumber::fromString(text, &end);
    return !version.isNull() && end == text.size();
}

bool isThisComputer(const QString& host) {
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

}  // namespace

FeedReading readUpdateFeed(const QByteArray& bytes) {
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject()) {
        return QStringLiteral("The update feed is damaged");
    }
    const QJsonObject feed = document.object();
    UpdateItem item{.version = feed.value(QLatin1String("version")).toString(),
                    .page = QUrl(feed.value(QLatin1String("url")).toString(), QUrl::StrictMode),
                    .notes = feed.value(QLatin1String("notes")).toString().left(notesLimit)};
    if (!isVersion(item.version)) {
        return QStringLiteral("The update feed names no version");
    }
    if (!isHttpsPage(item.page)) {
        return QStringLiteral("The update feed names no page with a secure address");
    }
    return item;
}

bool isUsableFeedAddress(const QUrl& address) {
    return isHttpsPage(address) ||
           (address.isValid() && address.scheme() == QLatin1String("http") && isThisComputer(address.host()));
}

bool isNewerVersion(const QString& offered, const QString& current) {
    return QVersionNumber::fromString(offered).normalized() > QVersionNumber::fromString(current).normalized();
}

}  // namespace sorvik
