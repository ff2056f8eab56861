#include "ui/check_for_updates_action.h"

#include <QMenu>

#include <utility>

#include "platform/log.h"

namespace sorvik {
namespace {

QString word(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

}  // namespace

CheckForUpdatesAction::CheckForUpdatesAction(QMenu& menu, QProperty<bool>& canCheckForUpdates,
                                             std::function<void()> checkForUpdates)
    : QAction(QStringLiteral("Check for Updates…"), &menu),
      canCheckForUpdates_(canCheckForUpdates),
      checkForUpdates_(std::move(checkForUpdates)) {
    setObjectName(QStringLiteral("checkForUpdatesAction"));
    setMenuRole(NoRole);
    setEnabled(canCheckForUpdates);
    observer_ = canCheckForUpdates.addNotifier([this] { setEnabled(canCheckForUpdates_); });
    connect(&menu, &QMenu::aboutToShow, this, &CheckForUpdatesAction::appear);
    connect(this, &QAction::triggered, this, &CheckForUpdatesAction::check);
    menu.addAction(this);
}

void CheckForUpdatesAction::appear() const {
    logLine(QStringLiteral("📊 Menu button appeared - canCheckForUpdates: ") + word(canCheckForUpdates_));
}

void CheckForUpdatesAction::check() const {
    logLine(QStringLiteral("🔄 Manual update check triggered from menu"));
    logLine(QStringLiteral("📊 canCheckForUpdates: ") + word(canCheckForUpdates_));
    checkForUpdates_();
}

}  // namespace sorvik
