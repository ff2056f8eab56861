#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "imaging/sips/content_kind.h"

namespace sorvik::sips {

/// What a picture would come to when decoded.
struct DecodedSize {
    std::uint64_t width = 0;   ///< pixels
    std::uint64_t height = 0;  ///< pixels
    std::uint64_t bytesPerPixel = 4;
};

enum class Decoding {
    streamed,  ///< row by row, memory for a few rows
    whole,     ///< all pixels in memory at once
};

inline constexpr std::uint64_t maximumSide = 65535;
/// Rows need little memory, but an intermediate lies on the disk with all of them.
inline constexpr std::uint64_t maximumStreamedBytes = std::uint64_t{8} << 30;
inline constexpr std::uint64_t maximumWholeBytes = std::uint64_t{1} << 30;

/// The size that the header of a file claims, looked up without any decoder. Absent for kinds whose
/// decoder tells without allocating, and for headers that are cut off or make no sense.
[[nodiscard]] std::optional<DecodedSize> claimedSize(ContentKind kind, std::span<const std::byte> bytes);

/// Throws Failure (tooLarge) when such a picture is not to be decoded.
void requireDecodable(const DecodedSize& size, Decoding decoding);

}  // namespace sorvik::sips
