#pragma once

#include <QObject>
#include <QProperty>
#include <QString>
#include <QTimer>
#include <QUrl>

#include <memory>
#include <optional>
#include <vector>

#include "services/updates/feed_fetcher.h"
#include "services/updates/update_feed.h"
#include "services/updates/update_schedule.h"
#include "services/updates/updater_delegate.h"

class QThread;

namespace sorvik {

class Bundle;
class DefaultsStore;

/// Asks a feed whether there is a newer version: on checkForUpdates(), and by itself once an interval. It only tells;
/// nothing is downloaded or installed. Main thread; no call blocks.
class Updater : public QObject {
    Q_OBJECT

public:
    struct Configuration {
        QUrl feed{};  ///< without one that isUsableFeedAddress() no check can start
        QString currentVersion{};
        UpdateSchedule schedule{};
        FetchLimits limits{};

        [[nodiscard]] static Configuration of(const Bundle& bundle);
    };

    /// The store keeps the time of the last check that had an answer.
    Updater(Configuration configuration, std::shared_ptr<DefaultsStore> store, QObject* parent = nullptr);

    /// Waits at most two seconds for a check that is on its way.
    ~Updater() override;

    QProperty<bool> automaticallyChecksForUpdates{false};
    QProperty<double> updateCheckInterval{86400};  ///< seconds; less than an hour counts as an hour
    QProperty<bool> canCheckForUpdates{false};     ///< started, a usable address, no check on its way; only to be read

    /// Before this no check starts. The delegate is not owned and outlives the updater, or is taken back by nullptr.
    void start(UpdaterDelegate* delegate = nullptr);
    void setDelegate(UpdaterDelegate* delegate);

    /// The user's own check; without effect while `canCheckForUpdates` is false.
    void checkForUpdates() { check(true); }

    /// The user wants the update that was found last: the page to open. Empty when none was found.
    [[nodiscard]] QUrl installFoundUpdate();

signals:
    /// `manual`: the user asked and waits for the answer.
    void updateFound(const QString& version, const QUrl& page, const QString& notes, bool manual);
    void updateNotFound(bool manual);
    void checkFailed(const QString& error, bool manual);

private:
    void check(bool manual);
    void startFetching();
    void read(const FeedAnswer& answer);
    void judge(const UpdateItem& item, bool manual);
    void fail(const QString& error, bool manual);
    void checkByItself();
    void scheduleNextCheck();
    void tryAgainLater();
    void wakeAfter(std::chrono::milliseconds wait);
    [[nodiscard]] std::chrono::seconds untilDue() const;

    Configuration configuration_;
    std::shared_ptr<DefaultsStore> store_;
    UpdaterDelegate nobody_;
    UpdaterDelegate* delegate_ = &nobody_;
    QTimer timer_;
    QThread* thread_ = nullptr;  ///< made at the first check, with its fetcher
    FeedFetcher* fetcher_ = nullptr;
    bool manual_ = false;  ///< of the check that is on its way
    std::optional<UpdateItem> found_;
    std::vector<QPropertyNotifier> observers_;
};

}  // namespace sorvik
