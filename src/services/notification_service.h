#pragma once

#include <QString>

namespace sorvik {

class NotificationCentre;

/// What a batch's closing notification says.
[[nodiscard]] QString completionBody(int successCount, int failedCount, bool wasCancelled);

/// Tells the user, who may be looking elsewhere, that a batch has ended. Failures are printed and go no further.
/// Main thread only.
class NotificationService {
public:
    /// `centre` must outlive the object.
    explicit NotificationService(NotificationCentre& centre) : centre_(centre) {}

    /// Once, when the program starts. The answer changes nothing.
    void requestPermission();

    void sendCompletionNotification(int successCount, int failedCount, bool wasCancelled);

private:
    NotificationCentre& centre_;
};

}  // namespace sorvik
