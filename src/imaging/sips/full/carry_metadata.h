#pragma once

#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

/// Puts EXIF, XMP and the profile of an intermediate into a WebP that lacks them, replacing the file
/// whole; its pixels are not encoded anew. Throws Failure.
[[nodiscard]] Status carryMetadata(const CarryRequest& request);

}  // namespace sorvik::sips
