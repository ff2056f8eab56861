#pragma once

#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

/// The part of the job that takes libraries: WebP gets orientation and profile, HEIC and AVIF get the
/// profile (their containers turn the picture, and the encoders at work here write it upright). Throws
/// Failure.
[[nodiscard]] Status keepLooksFully(const KeepLooksRequest& request);

}  // namespace sorvik::sips
