#pragma once

#include <cstddef>
#include <vector>

#include "codecs/picture.h"

namespace sorvik::codecs {

/// Throws std::invalid_argument when the layout is none that PNG and PDF can hold (0 < sides < 2^31,
/// 1 to 4 channels, 8 or 16 bits): the mistake of a caller.
void requireValid(const PixelLayout& layout);

/// True when the profile describes pixels with as many colour channels as the layout has. Files with
/// another one are refused or read with odd colours, so it is left out of them.
[[nodiscard]] bool profileFits(const std::vector<std::byte>& icc, const PixelLayout& layout);

/// Copies `count` 16-bit samples and turns the bytes of each round on little-endian machines. The same
/// call serves both directions.
void copySwapped16(const std::byte* from, std::byte* to, std::size_t count);

}  // namespace sorvik::codecs
