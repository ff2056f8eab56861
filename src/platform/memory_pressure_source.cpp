#include "platform/memory_pressure_source.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <poll.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <QFile>

#include <algorithm>
#include <array>
#include <utility>

namespace sorvik {
namespace {

constexpr std::int64_t stallShare = 10;  // one part in so many of the time that passes is too much

struct Threshold {
    PressureEvent event;
    const char* kind;  ///< the line's first word
    std::uint64_t StallTotals::*total;
};

constexpr std::array thresholds{
    Threshold{PressureEvent::warning, "some", &StallTotals::some},
    Threshold{PressureEvent::critical, "full", &StallTotals::full},
};

std::optional<std::uint64_t> totalOf(const QByteArray& text, const char* kind) {
    constexpr QByteArrayView label("total=");
    for (const QByteArray& line : text.split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        const auto field = std::ranges::find_if(words, [&](const QByteArray& word) { return word.startsWith(label); });
        if (words.front() == kind && field != words.end()) {
            bool isNumber = false;
            const std::uint64_t total = field->mid(label.size()).toULongLong(&isNumber);
            return isNumber ? std::optional(total) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<StallTotals> readStallTotals(const QByteArray& path) {
    Descriptor file;
    struct stat attributes {};
    std::array<char, 1024> text{};  // the kernel's file has two lines
    if (openRegularFile(path, O_RDONLY, file, attributes) != 0) {
        return std::nullopt;
    }
    const ssize_t count = read(file.number(), text.data(), text.size());
    return count > 0 ? parseStallTotals(QByteArray(text.data(), count)) : std::nullopt;
}

/// A trigger written to any other file would change its content.
bool takesTriggers(const Descriptor& file) {
    struct statfs system {};
    return fstatfs(file.number(), &system) == 0 &&
           (system.f_type == PROC_SUPER_MAGIC || system.f_type == CGROUP2_SUPER_MAGIC);
}

/// "some 200000 2000000": a stall in a window, in microseconds. The terminating NUL belongs to it.
QByteArray triggerText(const Threshold& threshold) {
    constexpr std::chrono::microseconds window = MemoryPressureSource::window;
    return QByteArray(threshold.kind) + ' ' + QByteArray::number(qint64{window.count() / stallShare}) + ' ' +
           QByteArray::number(qint64{window.count()}) + '\0';
}

Descriptor openTrigger(const QByteArray& path, const Threshold& threshold) {
    Descriptor file;
    struct stat attributes {};
    const QByteArray text = triggerText(threshold);
    const bool set = openRegularFile(path, O_RDWR, file, attributes) == 0 && takesTriggers(file) &&
                     write(file.number(), text.constData(), static_cast<std::size_t>(text.size())) == text.size();
    return set ? std::move(file) : Descriptor();
}

}  // namespace

std::optional<StallTotals> parseStallTotals(const QByteArray& text) {
    StallTotals totals;
    for (const Threshold& threshold : thresholds) {
        const auto total = totalOf(text, threshold.kind);
        if (!total) {
            return std::nullopt;
        }
        totals.*threshold.total = *total;
    }
    return totals;
}

PressureEvents pressureBetween(const StallTotals& before, const StallTotals& after, std::chrono::microseconds elapsed) {
    const auto tooMuch = static_cast<std::uint64_t>(std::max<std::int64_t>(elapsed.count() / stallShare, 1));
    PressureEvents events;
    for (const Threshold& threshold : thresholds) {
        const std::uint64_t from = before.*threshold.total;
        const std::uint64_t to = after.*threshold.total;
        events.setFlag(threshold.event, to > from && to - from >= tooMuch);
    }
    return events;
}

MemoryPressureSource::MemoryPressureSource(const QString& path, std::chrono::milliseconds pollInterval, QObject* parent)
    : QObject(parent), path_(QFile::encodeName(path)) {
    if (const auto reading = readStallTotals(path_)) {
        reading_ = *reading;
        sinceReading_.start();
        connect(&timer_, &QTimer::timeout, this, &MemoryPressureSource::poll);
        timer_.start(pollInterval);
    }
}

MemoryPressureSource::Watch MemoryPressureSource::watch() const {
    if (!triggers_.empty()) {
        return Watch::triggers;
    }
    return timer_.isActive() ? Watch::polling : Watch::none;
}

bool MemoryPressureSource::addTriggers() {
    std::vector<Trigger> triggers;
    for (const Threshold& threshold : thresholds) {
        Descriptor file = openTrigger(path_, threshold);
        if (!file.valid()) {
            return false;
        }
        const int number = file.number();
        auto notifier = std::make_unique<QSocketNotifier>(number, QSocketNotifier::Exception);
        connect(notifier.get(), &QSocketNotifier::activated, this,
                [this, event = threshold.event, number] { triggered(event, number); });
        triggers.push_back({std::move(file), std::move(notifier)});
    }
    triggers_ = std::move(triggers);
    return true;
}

void MemoryPressureSource::triggered(PressureEvent event, int file) {
    pollfd state{file, POLLPRI, 0};
    if (::poll(&state, 1, 0) > 0 && (state.revents & (POLLERR | POLLNVAL)) != 0) {
        // The trigger is gone and would wake the loop for ever.
        std::ranges::for_each(triggers_, [](Trigger& trigger) { trigger.notifier->setEnabled(false); });
        return;
    }
    emit pressure(event);
}

void MemoryPressureSource::poll() {
    if (!std::exchange(askedForTriggers_, true) && addTriggers()) {
        timer_.stop();
    }
    compareReading();
}

void MemoryPressureSource::compareReading() {
    const auto reading = readStallTotals(path_);
    if (!reading) {
        return;
    }
    const std::chrono::nanoseconds elapsed(sinceReading_.nsecsElapsed());
    sinceReading_.start();
    const PressureEvents events =
        pressureBetween(reading_, *reading, std::chrono::duration_cast<std::chrono::microseconds>(elapsed));
    reading_ = *reading;
    // One event each: who stalls fully also stalls partly, and a mask of both would never count as critical.
    for (const Threshold& threshold : thresholds) {
        if (events.testFlag(threshold.event)) {
            emit pressure(threshold.event);
        }
    }
}

}  // namespace sorvik
