#include "apps/sorvik/sorvik_app.h"

#include <QApplication>

#include <utility>

#include "engines/replacement_journal.h"
#include "platform/bundle.h"
#include "platform/desktop/file_manager.h"
#include "services/temporary_files.h"
#include "ui/look/theme.h"
#include "ui/update_messages.h"

namespace sorvik {
namespace {

std::unique_ptr<Updater> makeUpdater(const std::shared_ptr<DefaultsStore>& store) {
    return std::make_unique<Updater>(Updater::Configuration::of(Bundle::main()), store);
}

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

SorvikApp::SorvikApp(std::shared_ptr<DefaultsStore> store)
    : store_(std::move(store)),
      updater_(makeUpdater(store_)),
      settings_(store_),
      updateController_(updater_.get(), &settings_),
      about_(Bundle::main().info(QStringLiteral("CFBundleShortVersionString")), productLinks(Bundle::main())) {
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/sorvik.svg")));
    followAppearance();
    startUpdater();
    sweepUp();
    notifications_.requestPermission();
}

/// The window goes first: what a batch has in flight is waited for while all services still stand.
SorvikApp::~SorvikApp() { window_.reset(); }

void SorvikApp::followAppearance() {
    connect(&settings_, &AppSettings::appearanceApplied, this, &applyTheme);
    connect(&appearance_, &DesktopAppearance::changed, &settings_, &AppSettings::systemAppearanceChanged);
    settings_.setSystemDarkSource([this] { return appearance_.isDark(); });
    appearance_.start();
}

void SorvikApp::startUpdater() {
    auto started = makeUpdater(store_);
    started->start(&updateController_);
    updateController_.setUpdater(started.get());
    updater_ = std::move(started);
}

void SorvikApp::makeWindow() {
    window_ = std::make_unique<RootView>(engine_, settings_, &updateController_);
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
    preferences_->show();
    preferences_->raise();
    preferences_->activateWindow();
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
