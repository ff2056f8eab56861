#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "engines/file_replacement.h"
#include "engines/process_config_cache.h"

namespace sorvik {

/// Rewrites a finished file through `magick` without its metadata. `format` is a file extension. True
/// means that the file has the stripped content; otherwise it is as it was, but for the critical case of
/// replaceFile(). `copy` tells on whose behalf, which decides the log lines, where the temporary file gets
/// its name from, and whether the path goes through the gate. Blocks.
[[nodiscard]] bool stripMetadata(ProcessConfigCache& tools, const QString& path, const QString& format, Replacer copy);

/// The same for the bytes of a file, which come back as they were when the pass fails. Never throws.
[[nodiscard]] QByteArray strippedBytes(ProcessConfigCache& tools, const QByteArray& bytes, const QString& format);

/// The whole vector of that run.
[[nodiscard]] QStringList stripArguments(const QString& path, const QString& format, const QString& output);

/// Its environment, which is not that of the recipes: the inherited one with the folder of the tool on
/// `PATH`, in front unless the path's text holds it already, and the libraries in front of theirs.
[[nodiscard]] Environment stripEnvironment(const Environment& inherited, const QString& magick,
                                           const QString& frameworks);

}  // namespace sorvik
