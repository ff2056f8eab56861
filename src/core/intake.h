#pragma once

#include <QUrl>

#include "core/app_settings.h"
#include "core/file_item.h"
#include "core/format_resolver.h"

namespace sorvik {

/// The row of a dropped URL: format by extension, target as `targets` has it, size from the disk. What is wrong
/// with the URL shows in the row. Any thread; blocks for the size.
[[nodiscard]] FileItem makeFileItem(const QUrl& url, ProcessingMode mode, const FormatResolver& targets);

}  // namespace sorvik
