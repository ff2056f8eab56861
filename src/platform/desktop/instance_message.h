#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <optional>

namespace sorvik {

/// What a second start of the program hands to the first.
struct InstanceMessage {
    QList<QUrl> urls;
    QByteArray activationToken;  ///< with it the desktop lets the first one's window come to the front; may be empty
    bool operator==(const InstanceMessage&) const = default;
};

/// On the wire: four bytes with the length of what follows, highest first, then JSON.
inline constexpr qsizetype messageHeaderSize = 4;
inline constexpr qsizetype messageLimit = qsizetype{8} * 1024 * 1024;  ///< bytes behind the header

/// Absent when the message would be larger than the limit.
[[nodiscard]] std::optional<QByteArray> packMessage(const InstanceMessage& message);

/// How many bytes follow a header; absent when it is none.
[[nodiscard]] std::optional<qsizetype> messageLength(const QByteArray& header);

/// From the bytes behind the header; absent when they are no message. URLs that are none are left out.
[[nodiscard]] std::optional<InstanceMessage> unpackMessage(const QByteArray& bytes);

}  // namespace sorvik
