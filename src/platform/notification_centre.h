#pragma once

#include <QFlags>
#include <QString>

#include <functional>
#include <optional>

namespace sorvik {

enum class NotificationOption : unsigned { badge = 1, sound = 2, alert = 4 };
Q_DECLARE_FLAGS(NotificationOptions, NotificationOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(NotificationOptions)

struct NotificationRequest {
    QString identifier;  ///< one that is still shown under it is replaced
    QString title;
    QString body;  ///< words; a centre may take `&`, `<` and `>` for markup
    bool sound = false;
};

/// Where the desktop shows notifications. Main thread only. Both operations return at once and answer later, also
/// when nobody ever answers them; an answer is dropped when the centre goes before.
class NotificationCentre {
public:
    using AuthorizationAnswer = std::function<void(bool granted, const std::optional<QString>& error)>;
    using AddAnswer = std::function<void(const std::optional<QString>& error)>;

    virtual ~NotificationCentre() = default;

    virtual void requestAuthorization(NotificationOptions options, AuthorizationAnswer answer) = 0;

    /// Shows a notification at once.
    virtual void add(const NotificationRequest& request, AddAnswer answer) = 0;
};

}  // namespace sorvik
