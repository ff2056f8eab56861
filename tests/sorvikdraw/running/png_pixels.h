#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace sorvik::draw::test {

using Pixel = std::array<std::uint8_t, 4>;  ///< red, green, blue, alpha

struct Pixels {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> bytes;  ///< rows of Pixels without padding, alpha straight

    [[nodiscard]] Pixel at(std::uint32_t x, std::uint32_t y) const;
};

/// Nothing when the file is no sound PNG.
std::optional<Pixels> readPng(const std::filesystem::path& file);

/// Nothing but the size of a sound-looking PNG: for pictures that are too large to be looked at.
std::optional<Pixels> readPngSize(const std::filesystem::path& file);

}  // namespace sorvik::draw::test
