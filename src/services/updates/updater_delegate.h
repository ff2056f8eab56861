#pragma once

#include "services/updates/update_feed.h"

namespace sorvik {

/// What the updater asks and tells; as it stands, it allows everything and hears nothing. Called on the updater's
/// thread, the main one.
class UpdaterDelegate {
public:
    virtual ~UpdaterDelegate() = default;

    virtual bool updaterMayCheckForUpdates() { return true; }

    /// As long as the user has not been asked, nothing is checked without a click.
    virtual bool updaterShouldPromptForPermissionToCheckForUpdates() { return false; }

    virtual void updaterDidFinishLoadingAppcast(const UpdateItem& /*item*/) {}  ///< the feed was read
    virtual void updaterDidFindValidUpdate(const UpdateItem& /*item*/) {}
    virtual void updaterDidNotFindUpdate() {}
    virtual void updaterDidNotFindUpdate(const QString& /*error*/) {}
    virtual void updaterWillInstallUpdate(const UpdateItem& /*item*/) {}
};

}  // namespace sorvik
