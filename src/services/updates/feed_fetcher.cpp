#include "services/updates/feed_fetcher.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <utility>

namespace sorvik {
namespace {

constexpr int redirectLimit = 5;

QString tookTooLong() { return QStringLiteral("The update server took too long"); }

QNetworkRequest feedRequest(const QUrl& address, const FetchLimits& limits) {
    using Request = QNetworkRequest;
    Request request(address);
    // The library's own headers tell the user's language.
    request.setHeader(Request::UserAgentHeader, QStringLiteral("Sorvik"));
    request.setRawHeader("Accept-Language", "*");
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(Request::CookieLoadControlAttribute, Request::Manual);
    request.setAttribute(Request::CookieSaveControlAttribute, Request::Manual);
    request.setAttribute(Request::AuthenticationReuseAttribute, Request::Manual);
    request.setAttribute(Request::CacheLoadControlAttribute, Request::AlwaysNetwork);
    request.setAttribute(Request::RedirectPolicyAttribute, Request::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(redirectLimit);
    request.setTransferTimeout(static_cast<int>(limits.silence.count()));
    return request;
}

/// Empty when the answer is the feed.
QString failure(const QNetworkReply& reply) {
    constexpr int ok = 200;
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != 0 && status != ok) {
        return QStringLiteral("The update server answered with status %1").arg(status);
    }
    if (reply.error() == QNetworkReply::OperationCanceledError) {
        return tookTooLong();
    }
    return reply.error() == QNetworkReply::NoError ? QString() : reply.errorString();
}

}  // namespace

FeedFetcher::FeedFetcher(QUrl address, FetchLimits limits) : address_(std::move(address)), limits_(limits) {}

void FeedFetcher::fetch() {
    if (network_ == nullptr) {
        network_ = new QNetworkAccessManager(this);
    }
    answer_ = {};
    reply_ = network_->get(feedRequest(address_, limits_));
    reply_->setReadBufferSize(limits_.size + 1);
    connect(reply_, &QNetworkReply::readyRead, this, &FeedFetcher::readOn);
    connect(reply_, &QNetworkReply::redirected, this, &FeedFetcher::follow);
    connect(reply_, &QNetworkReply::finished, this, &FeedFetcher::finish);
    QTimer::singleShot(limits_.whole, reply_, [this] { stop(tookTooLong()); });
}

void FeedFetcher::readOn() {
    answer_.bytes += reply_->read(limits_.size + 1 - answer_.bytes.size());
    if (answer_.bytes.size() > limits_.size) {
        stop(QStringLiteral("The update feed is too large"));
    }
}

void FeedFetcher::follow(const QUrl& target) {
    if (target.scheme() == QLatin1String("https")) {
        emit reply_->redirectAllowed();
    } else {
        stop(QStringLiteral("The update server leads to an address that is not secure"));
    }
}

void FeedFetcher::stop(const QString& error) {
    if (reply_ != nullptr && answer_.error.isEmpty()) {
        answer_.error = error;
        reply_->abort();
    }
}

void FeedFetcher::finish() {
    if (answer_.error.isEmpty() && reply_->isOpen()) {
        readOn();
    }
    QNetworkReply* const reply = std::exchange(reply_, nullptr);
    reply->deleteLater();
    if (answer_.error.isEmpty()) {
        answer_.error = failure(*reply);
    }
    emit fetched(answer_);
}

}  // namespace sorvik
