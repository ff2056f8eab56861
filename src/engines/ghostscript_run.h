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

/// `gs` at `path`, ready to run directly: in the resource directory, which its variables name as ".".
[[nodiscard]] ChildSetup ghostscriptTask(const ProcessConfigCache& tools, const QString& path,
                                         const QStringList& arguments);

/// Runs it with a temporary directory of its own, so that nothing is left behind. Blocks.
[[nodiscard]] ChildResult runGhostscript(ChildSetup task);

/// Whether `gs`, which ends well on a file that is cut off too, says that it could not draw all of it.
[[nodiscard]] bool tellsOfDamage(const QString& toolOutput);

}  // namespace sorvik
