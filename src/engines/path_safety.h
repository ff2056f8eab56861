#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <optional>

namespace sorvik {

/// The head of the gate's log lines, by who asks.
enum class GateCaller { imageConverter, imageMagickConverter };

/// The standard form of a path: a leading "~" expanded, "." and empty components out, ".." resolved in
/// text. Absent, with a log line, for an empty result or one with a NUL character. No other character is
/// refused; the result may lie anywhere.
[[nodiscard]] std::optional<QString> normalizedPath(const QString& path, GateCaller caller);

/// Short-lived answers to "does this file exist?", yes and no alike. Any thread.
class FileValidationCache {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    static constexpr std::chrono::seconds cacheTimeout{5};

    static FileValidationCache& shared();
    explicit FileValidationCache(Clock clock = &std::chrono::steady_clock::now);

    /// Within five seconds of an answer the same path gets the same answer.
    [[nodiscard]] bool exists(const QString& path);

private:
    struct Answer {
        bool exists = false;
        std::chrono::steady_clock::time_point given;
    };

    Clock clock_;
    std::mutex lock_;
    std::map<QString, Answer> answers_;
};

/// The gate for an input: the normalised path of a file that exists.
[[nodiscard]] std::optional<QString> validatedInputPath(const QString& path, bool mustExist = true,
                                                        bool skipExistenceCheck = false);

/// Logs when a file stands at the path, and lets it be overwritten.
void warnIfOverwriting(const QString& path);

/// A tool's two paths behind the gate.
struct GatedPaths {
    QString input;
    QString output;
};

/// The opening of every recipe: both paths through the gate, with a log line for the one that
/// does not pass.
[[nodiscard]] std::optional<GatedPaths> gatedPaths(const QString& input, const QString& output);

}  // namespace sorvik
