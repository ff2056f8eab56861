#pragma once

#include <cstddef>
#include <span>

namespace sorvik::sips {

/// Colour channels of the pixels that a profile describes: 1 grey, 3 RGB, 4 CMYK; 0 for others and for
/// what is no profile. ICC.1:2010, 7.2.
[[nodiscard]] int profileChannels(std::span<const std::byte> icc);

/// Whether a profile means the colours that a picture without one is taken for: it calls itself sRGB and
/// has the primaries of sRGB. One that does so in another way is not recognised.
[[nodiscard]] bool isSrgbProfile(std::span<const std::byte> icc);

}  // namespace sorvik::sips
