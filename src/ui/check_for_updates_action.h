#pragma once

#include <QAction>
#include <QProperty>

#include <functional>

class QMenu;

namespace sorvik {

/// The menu item "Check for Updates…", enabled while a check can start.
class CheckForUpdatesAction final : public QAction {
    Q_OBJECT

public:
    /// Adds itself to the end of `menu`, which owns it. `canCheckForUpdates` must outlive the menu.
    CheckForUpdatesAction(QMenu& menu, QProperty<bool>& canCheckForUpdates, std::function<void()> checkForUpdates);

private:
    void appear() const;
    void check() const;

    QProperty<bool>& canCheckForUpdates_;
    std::function<void()> checkForUpdates_;
    QPropertyNotifier observer_;
};

}  // namespace sorvik
