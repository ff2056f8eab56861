#pragma once

#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

/// Converts any picture that libvips reads to any format of the table. Starts libvips; to be called
/// once a process. Throws Failure.
[[nodiscard]] Status convertFully(const ConvertRequest& request);

}  // namespace sorvik::sips
