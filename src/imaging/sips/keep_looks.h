#pragma once

#include "imaging/sips/arguments.h"

namespace sorvik::sips {

/// Gives a picture back what a step that drops all metadata has taken although it decides how the picture
/// looks: the orientation, and a profile that is not sRGB. The coded pixels are not touched; a
/// picture that lacks nothing stays as it is, and so does one of another kind than JPEG, PNG, TIFF, WebP,
/// HEIC and AVIF. Here are done JPEG, PNG and TIFF; false for what else lacks something. Throws Failure.
[[nodiscard]] bool keepLooksDirectly(const KeepLooksRequest& request);

}  // namespace sorvik::sips
