#include "engines/path_safety.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

#include "platform/log.h"

namespace sorvik {
namespace {

QString prefix(GateCaller caller) {
    return caller == GateCaller::imageConverter ? QStringLiteral("[ImageConverter] ")
                                                : QStringLiteral("[ImageMagickConverter] ");
}

QString standardized(const QString& path) {
    const bool home = path == QLatin1StringView("~") || path.startsWith(QLatin1StringView("~/"));
    const QString expanded = home ? QDir::homePath().append(QStringView(path).mid(1)) : path;
    QString clean = expanded.isEmpty() ? QString() : QDir::cleanPath(expanded);
    // Above the root there is only the root.
    while (clean == QLatin1StringView("/..") || clean.startsWith(QLatin1StringView("/../"))) {
        clean.remove(0, 3);
        clean = clean.isEmpty() ? QStringLiteral("/") : clean;
    }
    return clean == QLatin1StringView(".") ? QString() : clean;
}

}  // namespace

std::optional<QString> normalizedPath(const QString& path, GateCaller caller) {
    const QString result = standardized(path);
    if (result.isEmpty()) {
        logLine(prefix(caller) + QStringLiteral("Warning: Path became empty after normalization"));
        return std::nullopt;
    }
    if (result.contains(QChar(u'\0'))) {
        logLine(prefix(caller) + QStringLiteral("Warning: Path contains null bytes: ") + result);
        return std::nullopt;
    }
    return result;
}

FileValidationCache& FileValidationCache::shared() {
    static FileValidationCache cache;
    return cache;
}

FileValidationCache::FileValidationCache(Clock clock) : clock_(std::move(clock)) {}

bool FileValidationCache::exists(const QString& path) {
    const std::lock_guard guard(lock_);
    const auto now = clock_();
    const auto known = answers_.find(path);
    if (known != answers_.end() && now - known->second.given < cacheTimeout) {
        return known->second.exists;
    }
    const bool exists = QFileInfo::exists(path);
    answers_[path] = Answer{exists, now};
    return exists;
}

std::optional<QString> validatedInputPath(const QString& path, bool mustExist, bool skipExistenceCheck) {
    auto normalized = normalizedPath(path, GateCaller::imageMagickConverter);
    if (!normalized || skipExistenceCheck || !mustExist) {
        return normalized;
    }
    if (!FileValidationCache::shared().exists(*normalized)) {
        logLine(QStringLiteral("[ImageMagickConverter] Warning: File does not exist: ") + *normalized);
        return std::nullopt;
    }
    return normalized;
}

void warnIfOverwriting(const QString& path) {
    if (QFileInfo::exists(path)) {
        logLine(QStringLiteral("Warning: Output file will be overwritten: ") + path);
    }
}

std::optional<GatedPaths> gatedPaths(const QString& input, const QString& output) {
    auto gatedInput = validatedInputPath(input);
    if (!gatedInput) {
        logLine(QStringLiteral("Invalid or unsafe input path: ") + input);
        return std::nullopt;
    }
    auto gatedOutput = normalizedPath(output, GateCaller::imageMagickConverter);
    if (!gatedOutput) {
        logLine(QStringLiteral("Invalid or unsafe output path: ") + output);
        return std::nullopt;
    }
    return GatedPaths{std::move(*gatedInput), std::move(*gatedOutput)};
}

}  // namespace sorvik
