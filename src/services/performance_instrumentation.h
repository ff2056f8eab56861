#pragma once

#include <QMap>
#include <QString>

#include <chrono>
#include <cstdint>
#include <deque>
#include <limits>
#include <map>
#include <mutex>
#include <optional>

namespace sorvik {

enum class Category { imageConversion, imageCompression, batchProcessing, fileIO, validation, caching };

/// "Image Conversion" and so on, for the log.
[[nodiscard]] QString rawValue(Category category);

/// What is known of all operations of one name. Times in seconds.
struct OperationMetrics {
    static constexpr std::size_t maxRecentCount = 100;

    QString name;
    Category category{};  ///< of the first record under this name
    std::int64_t count = 0;
    double totalTime = 0;
    double minTime = std::numeric_limits<double>::infinity();
    double maxTime = 0;
    std::deque<double> recentDurations;  ///< oldest first

    void addSample(double seconds);
};

/// Times named operations. Passive: nothing decides anything by it.
class PerformanceInstrumentation {
public:
    static constexpr double slowOperationThreshold = 1.0;  ///< seconds; beyond it a warning line

    static PerformanceInstrumentation& shared();

    /// Adds one sample and logs it. Any thread.
    void record(const QString& name, Category category, const QMap<QString, QString>& metadata, double seconds);

    /// A copy of what is known under a name. Any thread.
    [[nodiscard]] std::optional<OperationMetrics> metrics(const QString& name) const;

private:
    mutable std::mutex lock_;
    std::map<QString, OperationMetrics> operations_;
};

/// One running operation; making it starts the clock. Dropped without complete() it records nothing.
class OperationTracker {
public:
    OperationTracker(QString name, Category category,
                     PerformanceInstrumentation& instrumentation = PerformanceInstrumentation::shared());

    /// Filled by the caller while the operation runs.
    QMap<QString, QString> metadata;

    /// Ends the timing where it is called; the recording follows on the event loop's thread, or at once
    /// where there is no event loop. The first call counts.
    void complete();

private:
    QString name_;
    Category category_;
    PerformanceInstrumentation* instrumentation_;
    std::chrono::steady_clock::time_point start_;
    bool completed_ = false;
};

}  // namespace sorvik
