#pragma once

#include <QObject>

#include <memory>

#include "core/app_settings.h"
#include "core/batch_engine.h"
#include "core/update_controller.h"
#include "platform/bundle.h"
#include "platform/desktop/dbus_notification_centre.h"
#include "platform/desktop/desktop_appearance.h"
#include "services/notification_service.h"
#include "services/updates/updater.h"
#include "ui/about_window.h"
#include "ui/preferences/preferences_view.h"
#include "ui/root_view.h"

namespace sorvik {

/// The program's long-lived services, made in a fixed order, and its windows. Has no logic of its own. Main thread.
class SorvikApp final : public QObject {
    Q_OBJECT

public:
    /// Makes the services; a window does not exist before show(). A QApplication must stand.
    explicit SorvikApp(std::shared_ptr<DefaultsStore> store,
                       Updater::Configuration updates = Updater::Configuration::of(Bundle::main()));
    ~SorvikApp() override;

    /// Opens the main window, with files as if they were dropped.
    void show(const QList<QUrl>& files);

    /// What a second start of the program asks for: its files in the list and the window in front.
    void takeOver(const QList<QUrl>& files, const QByteArray& activationToken);

    /// Closes the main window, which ends the program.
    void close() { window_->close(); }

    [[nodiscard]] RootView& window() { return *window_; }
    [[nodiscard]] AppSettings& settings() { return settings_; }
    [[nodiscard]] Updater& updater() { return *updater_; }

private:
    void followAppearance();
    void startUpdater();
    void makeWindow();
    void showAbout();
    void showPreferences();
    void tellEnd(int succeeded, int failed, bool cancelled);

    std::shared_ptr<DefaultsStore> store_;
    Updater::Configuration updates_;
    std::unique_ptr<Updater> updater_;  // first one that is never started, for the controller to hold
    AppSettings settings_;
    UpdateController updateController_;
    DBusNotificationCentre notificationCentre_;
    NotificationService notifications_{notificationCentre_};
    DesktopAppearance appearance_;
    SystemBatchEngine engine_;
    AboutWindowController about_;
    std::unique_ptr<PreferencesView> preferences_;
    std::unique_ptr<RootView> window_;
};

}  // namespace sorvik
