#include "services/notification_service.h"

#include "platform/log.h"
#include "platform/notification_centre.h"

namespace sorvik {

QString completionBody(int successCount, int failedCount, bool wasCancelled) {
    if (wasCancelled) {
        return QStringLiteral("Image conversion was cancelled.");
    }
    if (failedCount < 1) {
        return QStringLiteral("%1 %2 converted successfully.")
            .arg(successCount)
            .arg(successCount == 1 ? QLatin1StringView("file") : QLatin1StringView("files"));
    }
    return QStringLiteral("%1 files converted successfully, %2 failed.").arg(successCount).arg(failedCount);
}

void NotificationService::requestPermission() {
    const NotificationOptions options =
        NotificationOption::alert | NotificationOption::sound | NotificationOption::badge;
    centre_.requestAuthorization(options, [](bool, const std::optional<QString>& error) {
        if (error) {
            logLine(QStringLiteral("Notification permission error: ") + *error);
        }
    });
}

void NotificationService::sendCompletionNotification(int successCount, int failedCount, bool wasCancelled) {
    const NotificationRequest request{.identifier = QStringLiteral("conversion-complete"),
                                      .title = QStringLiteral("Sorvik - Conversion Complete"),
                                      .body = completionBody(successCount, failedCount, wasCancelled),
                                      .sound = true};
    centre_.add(request, [](const std::optional<QString>& error) {
        if (error) {
            logLine(QStringLiteral("Failed to send notification: ") + *error);
        }
    });
}

}  // namespace sorvik
