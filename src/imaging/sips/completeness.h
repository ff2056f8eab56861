#pragma once

#include <cstddef>
#include <span>

#include "imaging/sips/content_kind.h"

namespace sorvik::sips {

/// Whether a file ends before its (first) picture does, for the kinds whose decoders pass that over:
/// PNG (no end chunk), TIFF (strips, tiles or the profile reach beyond the end), PSD (the merged
/// picture is short of bytes). False for all other kinds.
[[nodiscard]] bool isCutOff(ContentKind kind, std::span<const std::byte> bytes);

}  // namespace sorvik::sips
