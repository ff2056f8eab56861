#include "engines/process_config_cache.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace sorvik {
namespace {

/// The bundle's resource of that name, or nothing.
QStringList bundled(const Bundle& bundle, const QString& name) {
    const auto path = bundle.resource(name);
    return path ? QStringList{*path} : QStringList();
}

/// The first of the candidates that exists, kept in `cached` once found.
std::optional<QString> resolve(std::optional<QString>& cached, const QStringList& candidates) {
    if (!cached) {
        const auto found =
            std::ranges::find_if(candidates, [](const QString& path) { return QFileInfo::exists(path); });
        if (found != candidates.end()) {
            cached = *found;
        }
    }
    return cached;
}

/// The bundle's programs and libraries in front of the inherited ones.
Environment withSearchPaths(const Environment& inherited, const std::optional<QString>& resources,
                            const QString& frameworks) {
    const auto libraries = QStringLiteral("LD_LIBRARY_PATH");
    const auto path = QStringLiteral("PATH");
    Environment environment = inherited;
    environment[libraries] = prependedPath(frameworks, inherited.value(libraries));
    if (resources) {
        environment[path] = prependedPath(*resources, inherited.value(path));
    }
    return environment;
}

void nameGhostscriptFolders(Environment& environment, const QString& folder) {
    for (const char* name : {"GS_LIB", "GS_RESOURCEDIR", "GS_FONTPATH"}) {
        environment[QString::fromLatin1(name)] = folder;
    }
}

}  // namespace

ProcessConfigCache& ProcessConfigCache::shared() {
    static ProcessConfigCache cache(Bundle::main());
    return cache;
}

ProcessConfigCache::ProcessConfigCache(Bundle bundle) : bundle_(std::move(bundle)) {}

QStringList ProcessConfigCache::magickCandidates() const { return bundled(bundle_, QStringLiteral("magick")); }

QStringList ProcessConfigCache::sorvikdrawCandidates() const { return bundled(bundle_, QStringLiteral("sorvikdraw")); }

std::optional<QString> ProcessConfigCache::resolveMagickPath(const QStringList& candidates) {
    const std::lock_guard guard(lock_);
    return resolve(cachedMagickPath_, candidates);
}

std::optional<QString> ProcessConfigCache::resolveGhostscriptPath() {
    const std::lock_guard guard(lock_);
    return resolve(cachedGhostscriptPath_, bundled(bundle_, QStringLiteral("gs")));
}

Environment ProcessConfigCache::toolEnvironment() {
    const std::lock_guard guard(lock_);
    if (!cachedEnvironment_) {
        cachedEnvironment_ =
            magickEnvironment(processEnvironment(), bundle_.resourceDirectory(), bundle_.frameworksDirectory(),
                              bundle_.resource(QStringLiteral("delegates.xml")).has_value());
    }
    return *cachedEnvironment_;
}

std::optional<ChildSetup> ProcessConfigCache::makeMagickTask(const QStringList& candidates) {
    const auto magick = resolveMagickPath(candidates);
    if (!magick) {
        return std::nullopt;
    }
    ChildSetup task;
    task.executable = *magick;
    task.environment = toolEnvironment();
    task.workingDirectory = bundle_.resourceDirectory().value_or(QString());
    return task;
}

QString ProcessConfigCache::bundledToolsIntegrity() {
    const bool complete = resolveMagickPath() && resolveGhostscriptPath();
    return complete ? QStringLiteral("true") : QStringLiteral("false");
}

QString prependedPath(const QString& directory, const QString& inherited) {
    return inherited.isEmpty() ? directory : directory + u':' + inherited;
}

Environment magickEnvironment(const Environment& inherited, const std::optional<QString>& resources,
                              const QString& frameworks, bool hasDelegates) {
    Environment environment = withSearchPaths(inherited, resources, frameworks);
    if (!resources) {
        return environment;
    }
    if (hasDelegates) {
        environment[QStringLiteral("MAGICK_CONFIGURE_PATH")] = *resources;
    }
    nameGhostscriptFolders(environment, *resources);
    return environment;
}

Environment ghostscriptEnvironment(const Environment& inherited, const std::optional<QString>& resources,
                                   const QString& frameworks) {
    Environment environment = withSearchPaths(inherited, resources, frameworks);
    nameGhostscriptFolders(environment, QStringLiteral("."));
    return environment;
}

}  // namespace sorvik
