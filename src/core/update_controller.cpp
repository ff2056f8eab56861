#include "core/update_controller.h"

#include "core/app_settings.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr double daily = 86400.0;  // seconds

}  // namespace

UpdateController::UpdateController(Updater* updater, AppSettings* settings, QObject* parent)
    : QObject(parent), updater_(updater), settings_(settings) {
    logLine(QStringLiteral("🚀 UpdateController initialized"));
    if (settings_ != nullptr) {
        observer_ = settings_->automaticUpdateCheck.addNotifier([this] { configureUpdater(); });
    }
    configureUpdater();
}

UpdateController::~UpdateController() { setUpdater(nullptr); }

void UpdateController::setUpdater(Updater* updater) {
    if (updater_ != nullptr && updater_ != updater) {
        updater_->setDelegate(nullptr);
    }
    updater_ = updater;
    configureUpdater();
}

void UpdateController::configureUpdater() {
    if (updater_ != nullptr && settings_ != nullptr) {
        updater_->updateCheckInterval = daily;
        updater_->automaticallyChecksForUpdates = settings_->automaticUpdateCheck.value();
    }
}

bool UpdateController::shouldShowPrompt() const {
    if (settings_ == nullptr) {
        return false;
    }
    const bool shown = settings_->hasShownUpdatePreferencesDialog;
    logLine(QStringLiteral("🔍 Update dialog status: hasShown = ") +
            (shown ? QStringLiteral("true") : QStringLiteral("false")));
    logLine(shown ? QStringLiteral("✅ Update dialog already shown, skipping")
                  : QStringLiteral("🎯 Showing update prompt..."));
    return !shown;
}

void UpdateController::answerPrompt(bool automatic) {
    logLine(QStringLiteral("✅ User selected: ") +
            (automatic ? QStringLiteral("Check Automatically") : QStringLiteral("Don't Check")));
    if (settings_ != nullptr) {
        settings_->automaticUpdateCheck = automatic;
        settings_->storeUpdateCheck();
        settings_->hasShownUpdatePreferencesDialog = true;
    }
}

bool UpdateController::updaterShouldPromptForPermissionToCheckForUpdates() {
    return settings_ == nullptr || !settings_->hasShownUpdatePreferencesDialog;
}

void UpdateController::updaterDidNotFindUpdate(const QString& error) {
    logLine(QStringLiteral("❌ Update check error: ") + error);
}

}  // namespace sorvik
