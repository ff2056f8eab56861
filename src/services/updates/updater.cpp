#include "services/updates/updater.h"

#include "platform/bundle.h"
#include "platform/defaults_store.h"
#include "platform/log.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace sorvik {
namespace {

using namespace std::chrono_literals;

constexpr auto goodbye = 2s;

// A timer does not count the time that the computer sleeps, so that a long wait is looked at again.
constexpr std::chrono::milliseconds longestSleep = 1h;

QString lastCheckKey() { return QStringLiteral("SULastCheckTime"); }

WallTime now() { return std::chrono::duration_cast<WallTime>(std::chrono::system_clock::now().time_since_epoch()); }

}  // namespace

Updater::Configuration Updater::Configuration::of(const Bundle& bundle) {
    return {.feed = QUrl(bundle.info(QStringLiteral("SorvikUpdateFeedURL")), QUrl::StrictMode),
            .currentVersion = bundle.info(QStringLiteral("CFBundleShortVersionString"))};
}

Updater::Updater(Configuration configuration, std::shared_ptr<DefaultsStore> store, QObject* parent)
    : QObject(parent), configuration_(std::move(configuration)), store_(std::move(store)) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &Updater::checkByItself);
    observers_.push_back(automaticallyChecksForUpdates.addNotifier([this] { scheduleNextCheck(); }));
    observers_.push_back(updateCheckInterval.addNotifier([this] { scheduleNextCheck(); }));
}

Updater::~Updater() {
    if (thread_ == nullptr) {
        return;
    }
    thread_->quit();
    // A thread that still waits for the system's resolver or proxies ends with the process.
    if (thread_->wait(QDeadlineTimer(goodbye))) {
        delete thread_;
    }
}

void Updater::setDelegate(UpdaterDelegate* delegate) { delegate_ = delegate != nullptr ? delegate : &nobody_; }

void Updater::start(UpdaterDelegate* delegate) {
    setDelegate(delegate);
    if (configuration_.feed.isEmpty()) {
        return;
    }
    if (!isUsableFeedAddress(configuration_.feed)) {
        logLine(QStringLiteral("Update feed address %1 is not secure and is not used")
                    .arg(configuration_.feed.toDisplayString()));
        return;
    }
    canCheckForUpdates = true;
    scheduleNextCheck();
}

void Updater::check(bool manual) {
    if (!canCheckForUpdates || !delegate_->updaterMayCheckForUpdates()) {
        return;
    }
    canCheckForUpdates = false;
    manual_ = manual;
    timer_.stop();
    startFetching();
}

void Updater::startFetching() {
    if (thread_ == nullptr) {
        thread_ = new QThread;
        fetcher_ = new FeedFetcher(configuration_.feed, configuration_.limits);
        fetcher_->moveToThread(thread_);
        connect(thread_, &QThread::finished, fetcher_, &QObject::deleteLater);
        connect(fetcher_, &FeedFetcher::fetched, this, &Updater::read);
        thread_->start();
    }
    QMetaObject::invokeMethod(fetcher_, &FeedFetcher::fetch);
}

void Updater::read(const FeedAnswer& answer) {
    const bool manual = manual_;
    canCheckForUpdates = true;
    if (!answer.error.isEmpty()) {
        tryAgainLater();
        return fail(answer.error, manual);
    }
    store_->setValue(lastCheckKey(), static_cast<qlonglong>(now().count()));
    scheduleNextCheck();
    const FeedReading reading = readUpdateFeed(answer.bytes);
    if (const auto* error = std::get_if<QString>(&reading)) {
        return fail(*error, manual);
    }
    judge(std::get<UpdateItem>(reading), manual);
}

void Updater::judge(const UpdateItem& item, bool manual) {
    delegate_->updaterDidFinishLoadingAppcast(item);
    if (isNewerVersion(item.version, configuration_.currentVersion)) {
        found_ = item;
        delegate_->updaterDidFindValidUpdate(item);
        emit updateFound(item.version, item.page, item.notes, manual);
    } else {
        found_.reset();
        delegate_->updaterDidNotFindUpdate();
        emit updateNotFound(manual);
    }
}

void Updater::fail(const QString& error, bool manual) {
    delegate_->updaterDidNotFindUpdate(error);
    emit checkFailed(error, manual);
}

QUrl Updater::installFoundUpdate() {
    if (!found_) {
        return {};
    }
    delegate_->updaterWillInstallUpdate(*found_);
    return found_->page;
}

void Updater::checkByItself() {
    if (untilDue() > 0s) {
        return scheduleNextCheck();
    }
    if (!delegate_->updaterShouldPromptForPermissionToCheckForUpdates()) {
        check(false);
    }
    if (canCheckForUpdates) {
        tryAgainLater();
    }
}

void Updater::scheduleNextCheck() {
    timer_.stop();
    if (automaticallyChecksForUpdates && canCheckForUpdates) {
        wakeAfter(std::max<std::chrono::milliseconds>(untilDue(), configuration_.schedule.startDelay));
    }
}

void Updater::tryAgainLater() {
    if (automaticallyChecksForUpdates) {
        wakeAfter(configuration_.schedule.retryDelay);
    }
}

void Updater::wakeAfter(std::chrono::milliseconds wait) { timer_.start(std::min(wait, longestSleep)); }

std::chrono::seconds Updater::untilDue() const {
    const WallTime last(store_->value(lastCheckKey()).toLongLong());
    return untilCheckIsDue(last, now(), updateCheckInterval);
}

}  // namespace sorvik
