#pragma once

#include <QString>

#include <optional>

#include "engines/conversion_error.h"

namespace sorvik {

/// Looks at a source before anything opens it: a regular file with content that may be read, or a link to
/// one. Absent when it is; else what the row has to say. Blocks.
[[nodiscard]] std::optional<ConversionError> checkSource(const QString& path);

/// Looks at the place of a result before time is spent on making it: the folder is there and may be
/// written to, and nothing but a writable file stands at the path. Blocks.
[[nodiscard]] std::optional<ConversionError> checkDestination(const QString& path);

}  // namespace sorvik
