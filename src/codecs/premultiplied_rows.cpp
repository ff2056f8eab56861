#include "codecs/premultiplied_rows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace sorvik::codecs {
namespace {

static_assert(std::endian::native == std::endian::little, "pixels are read as numbers of 32 bits, alpha on top");

constexpr std::size_t pixelBytes = 4;
constexpr std::size_t blockPixels = 16;
constexpr std::uint32_t opaqueAlpha = 0xff00'0000;
constexpr std::uint32_t greenAndAlpha = 0xff00'ff00;

/// Pixels that are read and converted together: most blocks of a drawing are opaque or empty, which are shorter ways.
using Block = std::array<std::uint32_t, blockPixels>;

std::uint32_t allBits(const Block& block) {
    std::uint32_t bits = ~0U;
    for (const std::uint32_t pixel : block) {
        bits &= pixel;
    }
    return bits;
}

std::uint32_t anyBits(const Block& block) {
    std::uint32_t bits = 0;
    for (const std::uint32_t pixel : block) {
        bits |= pixel;
    }
    return bits;
}

std::uint32_t swapRedAndBlue(std::uint32_t pixel) {
    return (pixel & greenAndAlpha) | (pixel >> 16 & 0xffU) | (pixel & 0xffU) << 16;
}

// Without a branch, in floats, so that it is done for four pixels at a time and more. The half keeps the product clear
// of the whole numbers, where an error in its last bit would count.
std::uint32_t straightColour(std::uint32_t colour, std::uint32_t alpha, float reciprocal) {
    const auto dividend = static_cast<float>(static_cast<std::int32_t>(colour * 255 + alpha / 2));
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::min((dividend + 0.5F) * reciprocal, 255.0F)));
}

std::uint32_t straightPixel(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    const float reciprocal = 1.0F / static_cast<float>(static_cast<std::int32_t>(std::max(alpha, 1U)));
    const std::uint32_t red = straightColour(pixel >> 16 & 0xffU, alpha, reciprocal);
    const std::uint32_t green = straightColour(pixel >> 8 & 0xffU, alpha, reciprocal);
    const std::uint32_t blue = straightColour(pixel & 0xffU, alpha, reciprocal);
    return alpha << 24 | blue << 16 | green << 8 | red;
}

template <typename Convert>
void convertBlock(Block& block, const Convert& convert) {
    for (std::uint32_t& pixel : block) {
        pixel = convert(pixel);
    }
}

void straighten(Block& block) {
    if ((allBits(block) & opaqueAlpha) == opaqueAlpha) {
        convertBlock(block, swapRedAndBlue);
    } else if (anyBits(block) != 0) {
        convertBlock(block, straightPixel);
    }
}

bool isOpaqueRow(const std::byte* row, std::size_t pixels) {
    Block block{};
    for (std::size_t x = 0; x < pixels; x += blockPixels) {
        const std::size_t count = std::min(blockPixels, pixels - x);
        if (count < blockPixels) {
            block.fill(opaqueAlpha);
        }
        std::memcpy(block.data(), row + x * pixelBytes, count * pixelBytes);
        if ((allBits(block) & opaqueAlpha) != opaqueAlpha) {
            return false;
        }
    }
    return true;
}

}  // namespace

void unpremultiply(const std::byte* bgra, std::byte* rgba, std::size_t pixels) {
    Block block{};
    for (std::size_t x = 0; x < pixels; x += blockPixels) {
        const std::size_t bytes = std::min(blockPixels, pixels - x) * pixelBytes;
        std::memcpy(block.data(), bgra + x * pixelBytes, bytes);
        straighten(block);
        std::memcpy(rgba + x * pixelBytes, block.data(), bytes);
    }
}

void takeOpaqueColours(const std::byte* bgra, std::byte* rgb, std::size_t pixels) {
    for (std::size_t x = 0; x < pixels; ++x) {
        rgb[3 * x] = bgra[pixelBytes * x + 2];
        rgb[3 * x + 1] = bgra[pixelBytes * x + 1];
        rgb[3 * x + 2] = bgra[pixelBytes * x];
    }
}

bool isOpaque(const PremultipliedPicture& picture) {
    for (std::size_t y = 0; y < picture.height; ++y) {
        if (!isOpaqueRow(picture.pixels + y * picture.stride, picture.width)) {
            return false;
        }
    }
    return true;
}

}  // namespace sorvik::codecs
