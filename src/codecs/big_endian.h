#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace sorvik::codecs {

/// The number as four bytes, most significant first.
[[nodiscard]] constexpr std::array<std::byte, 4> bigEndian32(std::uint32_t value) {
    return {std::byte(value >> 24), std::byte(value >> 16), std::byte(value >> 8), std::byte(value)};
}

/// Reads four bytes.
[[nodiscard]] constexpr std::uint32_t readBigEndian32(const std::byte* bytes) {
    return std::to_integer<std::uint32_t>(bytes[0]) << 24 | std::to_integer<std::uint32_t>(bytes[1]) << 16 |
           std::to_integer<std::uint32_t>(bytes[2]) << 8 | std::to_integer<std::uint32_t>(bytes[3]);
}

inline void appendBigEndian32(std::vector<std::byte>& bytes, std::uint32_t value) {
    const auto number = bigEndian32(value);
    bytes.insert(bytes.end(), number.begin(), number.end());
}

}  // namespace sorvik::codecs
