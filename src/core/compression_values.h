#pragma once

#include "core/app_settings.h"
#include "core/vocabulary/formats.h"

namespace sorvik {

/// The value that a format's compression recipe gets, on the recipe's own scale: 0 to 100, or an integer level
/// for PNG (clamped to 0 to 9) and GIF. Without settings the defaults. 0 for a format without a recipe.
[[nodiscard]] double compressionValue(ImageFormat format, const AppSettings* settings);

}  // namespace sorvik
