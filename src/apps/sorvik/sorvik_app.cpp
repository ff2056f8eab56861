#include "apps/sorvik/sorvik_app.h"

#include <QApplication>

#include <utility>

#include "engines/replacement_journal.h"
#include "services/temporary_files.h"
#include "ui/look/theme.h"

namespace sorvik {

SorvikApp::SorvikApp(std::shared_ptr<DefaultsStore> store) : settings_(std::move(store)) {
    connect(&settings_, &AppSettings::appearanceApplied, this, [](bool dark) { applyTheme(*qApp, dark); });
    settings_.applyAppearance();
    recoverReplacements();
    TempFileManager::shared().cleanupOrphanedFiles();
}

void SorvikApp::makeWindow() { window_ = std::make_unique<RootView>(engine_, settings_); }

void SorvikApp::show(const QList<QUrl>& files) {
    makeWindow();
    window_->show();
    window_->addFiles(files);
}

}  // namespace sorvik
