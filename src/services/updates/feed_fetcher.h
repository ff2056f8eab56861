#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <variant>

class QNetworkAccessManager;
class QNetworkReply;

namespace sorvik {

/// What a server is allowed to cost.
struct FetchLimits {
    qint64 size = qint64{256} * 1024;           ///< bytes
    std::chrono::milliseconds silence{15'000};  ///< without a byte
    std::chrono::milliseconds whole{30'000};    ///< until the last byte
};

/// The bytes of the feed, or why there are none.
struct FeedAnswer {
    QByteArray bytes;
    QString error;  ///< empty: the feed was fetched
};

/// Fetches a feed over HTTP: no cookies, no cache, no words about the program or its user. Redirects go to https
/// only. Lives in a thread of its own, since looking for proxies blocks.
class FeedFetcher : public QObject {
    Q_OBJECT

public:
    FeedFetcher(QUrl address, FetchLimits limits);

    /// One at a time; ends with fetched().
    void fetch();

signals:
    void fetched(const sorvik::FeedAnswer& answer);

private:
    void readOn();
    void follow(const QUrl& target);
    void stop(const QString& error);
    void finish();

    QUrl address_;
    FetchLimits limits_;
    QNetworkAccessManager* network_ = nullptr;  ///< made in the thread where it works; a child
    QNetworkReply* reply_ = nullptr;
    FeedAnswer answer_;
};

}  // namespace sorvik
