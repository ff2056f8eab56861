#pragma once

#include <QObject>
#include <QPointer>
#include <QProperty>

#include <optional>

#include "services/updates/updater.h"
#include "services/updates/updater_delegate.h"

namespace sorvik {

class AppSettings;

/// Ties the updater to the settings: whether it checks by itself follows `automaticUpdateCheck`, now and later. Asks
/// the user once; the prompt's window is somebody else's. Owns neither; both may go before it. Main thread.
/// Without Q_OBJECT: the room's meta-objects are one unit, which would draw the network library into every program.
class UpdateController : public QObject, public UpdaterDelegate {
public:
    UpdateController(Updater* updater, AppSettings* settings, QObject* parent = nullptr);
    ~UpdateController() override;

    [[nodiscard]] Updater* updater() const { return updater_; }

    /// Another updater in place of the first, which loses its delegate. Start the new one with this object as delegate.
    void setUpdater(Updater* updater);

    /// Whether the question is still to be asked; says so in the log.
    [[nodiscard]] bool shouldShowPrompt() const;

    /// The user's answer, for good. A window that is closed without one calls nothing.
    void answerPrompt(bool automatic);

    bool updaterShouldPromptForPermissionToCheckForUpdates() override;
    using UpdaterDelegate::updaterDidNotFindUpdate;
    void updaterDidNotFindUpdate(const QString& error) override;

private:
    void configureUpdater();

    QPointer<Updater> updater_;
    QPointer<AppSettings> settings_;
    std::optional<QPropertyNotifier> observer_;
};

}  // namespace sorvik
