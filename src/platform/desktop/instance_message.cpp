#include "platform/desktop/instance_message.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

namespace sorvik {
namespace {

constexpr QLatin1String urlsKey("urls");
constexpr QLatin1String tokenKey("activationToken");

}  // namespace

std::optional<QByteArray> packMessage(const InstanceMessage& message) {
    QJsonArray urls;
    for (const QUrl& url : message.urls) {
        urls.append(QString::fromLatin1(url.toEncoded()));
    }
    const QJsonObject object{{urlsKey, urls}, {tokenKey, QString::fromUtf8(message.activationToken)}};
    const QByteArray bytes = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (bytes.size() > messageLimit) {
        return std::nullopt;
    }
    QByteArray packed(messageHeaderSize, '\0');
    qToBigEndian(static_cast<quint32>(bytes.size()), packed.data());
    return packed + bytes;
}

std::optional<qsizetype> messageLength(const QByteArray& header) {
    if (header.size() != messageHeaderSize) {
        return std::nullopt;
    }
    const qsizetype length = qFromBigEndian<quint32>(header.constData());
    return length <= messageLimit ? std::optional(length) : std::nullopt;
}

std::optional<InstanceMessage> unpackMessage(const QByteArray& bytes) {
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    if (!object.value(urlsKey).isArray()) {
        return std::nullopt;
    }
    InstanceMessage message{.urls = {}, .activationToken = object.value(tokenKey).toString().toUtf8()};
    for (const QJsonValueRef each : object.value(urlsKey).toArray()) {
        if (QUrl url = QUrl::fromEncoded(each.toString().toUtf8(), QUrl::StrictMode); url.isValid()) {
            message.urls.append(std::move(url));
        }
    }
    return message;
}

}  // namespace sorvik
