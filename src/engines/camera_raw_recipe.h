#pragma once

#include <QString>
#include <QStringList>

#include "engines/process_config_cache.h"

namespace sorvik {

/// The reader's settings: the second ones are for Fujifilm's files only, where the first ones fail.
enum class RawAttempt { first, second };

/// Converts a camera's raw file. `format` is a file extension in any letter case; quality is 0.0 to 1.0. False on
/// any failure, which is logged; a refused format starts no tool. Blocks.
[[nodiscard]] bool convertRAWFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                                  const QString& format, bool stripMetadata, double quality);

/// The whole vector of an attempt.
[[nodiscard]] QStringList rawArguments(RawAttempt attempt, const QString& input, const QString& format,
                                       bool stripMetadata, double quality, const QString& output);

}  // namespace sorvik
