#pragma once

#include <cstdint>
#include <vector>

#include "sorvikdraw/engine/cg_types.h"

/// Encoded pictures, made by the libraries that read them.
namespace sorvik::draw::testing {

struct PngMaking {
    int width = 1, height = 1;
    int bits = 8;  ///< a sample
    bool interlaced = false;
    std::vector<std::uint8_t> rgba;  ///< one pixel after the other; each sample is written twice for 16 bits
};

[[nodiscard]] CGTypes::Image png(const PngMaking& making);
/// All of one colour, 0xRRGGBB.
[[nodiscard]] CGTypes::Image jpeg(int width, int height, std::uint32_t color);
/// The same with its last bytes missing.
[[nodiscard]] CGTypes::Image truncated(const CGTypes::Image& image, std::size_t bytes);

}  // namespace sorvik::draw::testing
