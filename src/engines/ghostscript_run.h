#pragma once

#include <QString>
#include <QStringList>

#include <optional>

#include "engines/process_config_cache.h"
#include "platform/child_process.h"

namespace sorvik {

/// The whole vector of a direct `gs` run at 300 dots an inch. `jpegQuality` is 0.0 to 1.0, not clamped,
/// truncated to percent; absent where the device has none.
[[nodiscard]] QStringList ghostscriptArguments(const QString& device, const QString& output,
                                               std::optional<double> jpegQuality, const QString& input);

/// Where a first step leaves what a second one reads: beside the output, its extension replaced by `ending`.
[[nodiscard]] QString stepPath(const QString& outputPath, const QString& ending);

/// The environment for `gs` started directly, from an inherited one. Its own places are relative: the working
/// directory has to be the resource directory.
[[nodiscard]] Environment ghostscriptEnvironment(const Environment& inherited, const std::optional<QString>& resources,
                                                 const QString& frameworks);

/// `gs` at `path`, ready to run.
[[nodiscard]] ChildSetup ghostscriptTask(const ProcessConfigCache& tools, const QString& path,
                                         const QStringList& arguments);

/// Runs it with a temporary directory of its own, so that nothing is left behind. Blocks.
[[nodiscard]] ChildResult runGhostscript(ChildSetup task);

/// Whether `gs`, which ends well on a file that is cut off too, says that it could not draw all of it.
[[nodiscard]] bool tellsOfDamage(const QString& toolOutput);

}  // namespace sorvik
