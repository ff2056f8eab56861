#include "apps/sorvik/sorvik_app.h"

#include <QApplication>

#include <utility>

#include "engines/replacement_journal.h"
#include "platform/desktop/file_manager.h"
#include "services/temporary_files.h"
#include "services/updates/update_feed.h"
#include "ui/look/front.h"
#include "ui/look/theme.h"
#include "ui/update_messages.h"

namespace sorvik {
namespace {

ProductLinks productLinks(const Bundle& bundle) {
    return {bundle.info(QStringLiteral("SorvikMakerName")), QUrl(bundle.info(QStringLiteral("SorvikMakerURL"))),
            QUrl(bundle.info(QStringLiteral("SorvikWebsiteURL")))};
}

/// What a run left that was killed.
void sweepUp() {
    recoverReplacements();
    TempFileManager::shared().cleanupOrphanedFiles();
}

}  // namespace

SorvikApp::SorvikApp(std::shared_ptr<DefaultsStore> store, Updater::Configuration updates)
    : store_(std::move(store)),
      updates_(std::move(updates)),
      updater_(std::make_unique<Updater>(updates_, store_)),
      settings_(store_),
      updateController_(updater_.get(), &settings_),
      about_(Bundle::main().info(QStringLiteral("CFBundleShortVersionString")), productLinks(Bundle::main())) {
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/sorvik.svg")));
    followAppearance();
    startUpdater();
    sweepUp();
    notifications_.requestPermission();
}

/// The window goes first: what a batch has in flight is waited for while all services still stand. Nothing may bring
/// it back meanwhile.
SorvikApp::~SorvikApp() {
    notificationCentre_.disconnect(window_.get());
    window_.reset();
}

void SorvikApp::followAppearance() {
    connect(&settings_, &AppSettings::appearanceApplied, this, &applyTheme);
    connect(&appearance_, &DesktopAppearance::changed, &settings_, &AppSettings::systemAppearanceChanged);
    settings_.setSystemDarkSource([this] { return appearance_.isDark(); });
    appearance_.start();
}

void SorvikApp::startUpdater() {
    auto started = std::make_unique<Updater>(updates_, store_);
    started->start(&updateController_);
    updateController_.setUpdater(started.get());
    updater_ = std::move(started);
}

void SorvikApp::makeWindow() {
    // Where nothing can be checked, nothing is asked and nothing offered.
    UpdateController* updates = isUsableFeedAddress(updates_.feed) ? &updateController_ : nullptr;
    window_ = std::make_unique<RootView>(engine_, settings_, updates);
    connect(window_.get(), &RootView::aboutRequested, this, &SorvikApp::showAbout);
    connect(window_.get(), &RootView::preferencesRequested, this, &SorvikApp::showPreferences);
    connect(window_.get(), &RootView::revealRequested, this, [](const QUrl& file) { revealInFileManager(file); });
    connect(&window_->content().list(), &FileProcessingViewModel::batchEnded, this, &SorvikApp::tellEnd);
    connect(&notificationCentre_, &DBusNotificationCentre::activated, window_.get(), &RootView::present);
    new UpdateMessages(*updater_, *window_, window_.get());
}

void SorvikApp::showAbout() {
    about_.show(window_.get());
    about_.window()->setAttribute(Qt::WA_QuitOnClose, false);
}

/// One window for the run; it never keeps the program alive.
void SorvikApp::showPreferences() {
    if (!preferences_) {
        preferences_ = std::make_unique<PreferencesView>(settings_);
        preferences_->setAttribute(Qt::WA_QuitOnClose, false);
    }
    bringToFront(*preferences_);
}

/// A batch that had nothing to do has nothing to tell.
void SorvikApp::tellEnd(int succeeded, int failed, bool cancelled) {
    if (succeeded > 0 || failed > 0 || cancelled) {
        notifications_.sendCompletionNotification(succeeded, failed, cancelled);
    }
}

void SorvikApp::show(const QList<QUrl>& files) {
    makeWindow();
    window_->show();
    window_->addFiles(files);
}

void SorvikApp::takeOver(const QList<QUrl>& files, const QByteArray& activationToken) {
    // Read by the window system's plugin when the window asks for the focus.
    qputenv("XDG_ACTIVATION_TOKEN", activationToken);
    window_->addFiles(files);
    window_->present();
}

}  // namespace sorvik
