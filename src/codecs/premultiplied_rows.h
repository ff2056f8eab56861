#pragma once

#include <cstddef>
#include <cstdint>

namespace sorvik::codecs {

/// A picture as drawing libraries keep it in memory: four bytes a pixel, blue, green, red, alpha, with the colours
/// multiplied by alpha. The pixels stay their owner's.
struct PremultipliedPicture {
    const std::byte* pixels = nullptr;
    std::size_t stride = 0;    ///< bytes from the start of a row to the start of the next
    std::uint32_t width = 0;   ///< pixels
    std::uint32_t height = 0;  ///< pixels
};

/// The pixels as straight red, green, blue and alpha, each colour the nearest to colour * 255 / alpha, half up. A
/// colour above its alpha, which no drawing makes, is taken for its alpha.
void unpremultiply(const std::byte* bgra, std::byte* rgba, std::size_t pixels);

/// The colours alone, red, green and blue, of opaque pixels.
void takeOpaqueColours(const std::byte* bgra, std::byte* rgb, std::size_t pixels);

[[nodiscard]] bool isOpaque(const PremultipliedPicture& picture);

}  // namespace sorvik::codecs
