#pragma once

#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>

#include "platform/bundle.h"
#include "platform/child_process.h"

namespace sorvik {

/// Finds the bundled tools and builds what they need to find their own libraries and data. A tool
/// that was found is not looked up again in the life of the process; one that wasn't is looked up at each
/// call. `PATH` is never searched. Any thread.
class ProcessConfigCache {
public:
    static ProcessConfigCache& shared();

    explicit ProcessConfigCache(Bundle bundle);

    [[nodiscard]] const Bundle& bundle() const { return bundle_; }

    /// Where `magick` may lie: the bundle's, or nowhere.
    [[nodiscard]] QStringList magickCandidates() const;

    /// Where `sorvikdraw` may lie: the bundle's, or nowhere.
    [[nodiscard]] QStringList sorvikdrawCandidates() const;

    /// The first candidate that exists, cached once found.
    [[nodiscard]] std::optional<QString> resolveMagickPath(const QStringList& candidates);
    [[nodiscard]] std::optional<QString> resolveMagickPath() { return resolveMagickPath(magickCandidates()); }
    [[nodiscard]] std::optional<QString> resolveGhostscriptPath();

    /// For `magick`: absolute tool, library and Ghostscript paths over the inherited environment.
    /// Worked out once.
    [[nodiscard]] Environment toolEnvironment();

    /// `magick` ready to run but for its arguments; absent when it isn't there.
    [[nodiscard]] std::optional<ChildSetup> makeMagickTask(const QStringList& candidates);
    [[nodiscard]] std::optional<ChildSetup> makeMagickTask() { return makeMagickTask(magickCandidates()); }

    /// "true" when both `magick` and `gs` are there, else "false".
    [[nodiscard]] QString bundledToolsIntegrity();

private:
    Bundle bundle_;
    std::mutex lock_;  // guards the three below
    std::optional<QString> cachedMagickPath_;
    std::optional<Environment> cachedEnvironment_;
    std::optional<QString> cachedGhostscriptPath_;
};

/// The environment for `magick` from an inherited one; absent directories leave their variables out.
[[nodiscard]] Environment magickEnvironment(const Environment& inherited, const std::optional<QString>& resources,
                                            const QString& frameworks, bool hasDelegates);

/// The environment for `gs` started directly, whose working directory is the resource directory.
[[nodiscard]] Environment ghostscriptEnvironment(const Environment& inherited, const std::optional<QString>& resources,
                                                 const QString& frameworks);

/// `directory` in front of a search path: alone where the path is empty.
[[nodiscard]] QString prependedPath(const QString& directory, const QString& inherited);

}  // namespace sorvik
