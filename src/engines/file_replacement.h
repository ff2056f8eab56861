#pragma once

#include <QString>

namespace sorvik {

/// Who replaces a file: the head of the log lines and the error domain.
enum class Replacer { imageConverter, sipsConverter };

/// Replaces the content of `originalPath` by that of `newContentPath`, through a backup beside the
/// original that is put back when anything fails. The new content stays where it is. False with a
/// log line on failure; the original is then as it was, or, should even the restoration fail, in
/// its backup "<name>.backup.<UUID>"; `reason`, if given, then holds the system's words where they are known. Blocks.
[[nodiscard]] bool replaceFile(const QString& originalPath, const QString& newContentPath,
                               Replacer replacer = Replacer::imageConverter, QString* reason = nullptr);

/// Where the backup of a file goes: beside it, under a name that fits even when the file's own name
/// leaves no room for an addition.
[[nodiscard]] QString backupPath(const QString& originalPath);

}  // namespace sorvik
