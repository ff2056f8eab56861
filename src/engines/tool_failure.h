#pragma once

#include "engines/conversion_error.h"

namespace sorvik {

/// The failure of a tool that says nothing about its cause: a full disk is found out here, by what is left in the
/// temporary directory.
[[nodiscard]] ConversionError toolFailure();

}  // namespace sorvik
