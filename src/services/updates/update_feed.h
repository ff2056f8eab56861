#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <variant>

namespace sorvik {

/// What the feed offers.
struct UpdateItem {
    QString version;  ///< "1.4.2": numbers and dots
    QUrl page;        ///< where the user gets it; always https
    QString notes;    ///< plain text, may be empty
    bool operator==(const UpdateItem&) const = default;
};

/// The item, or why the bytes are no feed.
using FeedReading = std::variant<UpdateItem, QString>;

[[nodiscard]] FeedReading readUpdateFeed(const QByteArray& bytes);

/// Whether a feed may be fetched from there: https, or plain http on this computer.
[[nodiscard]] bool isUsableFeedAddress(const QUrl& address);

/// By the numbers, so that 1.10 is newer than 1.9 and 1.0 is not newer than 1.
[[nodiscard]] bool isNewerVersion(const QString& offered, const QString& current);

}  // namespace sorvik
