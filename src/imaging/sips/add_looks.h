#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "imaging/sips/looks.h"

namespace sorvik::sips {

// A picture with the orientation (where it is not 1) and the profile (where there is one) that it lacks.
// Its coded pixels are copied as they are. All throw Failure for damage.

/// Segments behind the start marker and JFIF (Exif 2.32, 4.7; ICC.1:2010, B.4).
[[nodiscard]] std::vector<std::byte> jpegWithLooks(std::span<const std::byte> jpeg, const Looks& lacking);

/// Chunks behind IHDR; an sRGB, gAMA or cHRM chunk that would contradict what is added goes.
[[nodiscard]] std::vector<std::byte> pngWithLooks(std::span<const std::byte> png, const Looks& lacking);

/// An animation with the frame times and the number of rounds of `original` (RFC 9649, 2.7.1). Empty when they are the
/// same already, or the frames are not as many.
[[nodiscard]] std::vector<std::byte> webpWithTimesOf(std::span<const std::byte> webp,
                                                     std::span<const std::byte> original);

/// Each page gets what it lacks of the page of the same number of the TIFF `original`; one that lacks
/// anything gets a new directory at the end of the file. Empty when none does.
[[nodiscard]] std::vector<std::byte> tiffWithLooks(std::span<const std::byte> tiff,
                                                   std::span<const std::byte> original);

}  // namespace sorvik::sips
