#pragma once

#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

/// Gives a WebP or AVIF that was made from an intermediate what its encoder left out: EXIF, XMP and
/// profile where it lacks them, and transparency, for which an AVIF is encoded anew. The file is
/// replaced whole. Throws Failure; the file is then as it was.
[[nodiscard]] Status carryMetadata(const CarryRequest& request);

}  // namespace sorvik::sips
