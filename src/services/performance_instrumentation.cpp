#include "services/performance_instrumentation.h"

#include "platform/log.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QStringList>

#include <algorithm>
#include <array>

namespace sorvik {
namespace {

constexpr std::array categoryNames{"Image Conversion", "Image Compression", "Batch Processing",
                                   "File I/O",         "Validation",        "Caching"};
static_assert(categoryNames.size() == static_cast<std::size_t>(Category::caching) + 1);

QString milliseconds(double seconds) {
    constexpr double millisecondsPerSecond = 1000;
    return QString::number(seconds * millisecondsPerSecond, 'f', 2) + QStringLiteral("ms");
}

QString metadataSuffix(const QMap<QString, QString>& metadata) {
    QStringList entries;
    for (const auto& [key, value] : metadata.asKeyValueRange()) {
        entries << key + QLatin1Char('=') + value;
    }
    return entries.isEmpty() ? QString() : QStringLiteral(" [") + entries.join(QStringLiteral(", ")) + QLatin1Char(']');
}

void logSample(const QString& name, Category category, const QMap<QString, QString>& metadata, double seconds) {
    logLine(QStringLiteral("⏱️ [") + rawValue(category) + QStringLiteral("] ") + name + QStringLiteral(": ") +
            milliseconds(seconds) + metadataSuffix(metadata));
    if (seconds > PerformanceInstrumentation::slowOperationThreshold) {
        logLine(QStringLiteral("⚠️ Slow operation detected: ") + name + QStringLiteral(" took ") +
                milliseconds(seconds));
    }
}

}  // namespace

QString rawValue(Category category) {
    return QString::fromLatin1(categoryNames.at(static_cast<std::size_t>(category)));
}

void OperationMetrics::addSample(double seconds) {
    ++count;
    totalTime += seconds;
    minTime = std::min(minTime, seconds);
    maxTime = std::max(maxTime, seconds);
    recentDurations.push_back(seconds);
    if (recentDurations.size() > maxRecentCount) {
        recentDurations.pop_front();
    }
}

// Never destroyed: a tracker may complete while the program ends.
PerformanceInstrumentation& PerformanceInstrumentation::shared() {
    static auto& instance = *new PerformanceInstrumentation;
    return instance;
}

void PerformanceInstrumentation::record(const QString& name, Category category, const QMap<QString, QString>& metadata,
                                        double seconds) {
    const std::scoped_lock guard(lock_);  // also over the lines, so that they come in the order of the samples
    const auto [entry, fresh] = operations_.try_emplace(name);
    if (fresh) {
        entry->second.name = name;
        entry->second.category = category;
    }
    entry->second.addSample(seconds);
    logSample(name, category, metadata, seconds);
}

std::optional<OperationMetrics> PerformanceInstrumentation::metrics(const QString& name) const {
    const std::scoped_lock guard(lock_);
    const auto found = operations_.find(name);
    return found == operations_.end() ? std::nullopt : std::optional(found->second);
}

OperationTracker::OperationTracker(QString name, Category category, PerformanceInstrumentation& instrumentation)
    : name_(std::move(name)),
      category_(category),
      instrumentation_(&instrumentation),
      start_(std::chrono::steady_clock::now()) {}

void OperationTracker::complete() {
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start_;
    if (std::exchange(completed_, true)) {
        return;
    }
    const auto record = [instrumentation = instrumentation_, name = name_, category = category_, entries = metadata,
                         seconds = duration.count()] { instrumentation->record(name, category, entries, seconds); };
    if (QCoreApplication* application = QCoreApplication::instance(); application != nullptr) {
        QMetaObject::invokeMethod(application, record, Qt::QueuedConnection);
    } else {
        record();
    }
}

}  // namespace sorvik
