#include "codecs/premultiplied_rows.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace sorvik::codecs {
namespace {

static_assert(std::endian::native == std::endian::little, "pixels are read as numbers of 32 bits, alpha on top");

constexpr std::size_t pixelBytes = 4;
constexpr std::uint32_t opaqueAlpha = 0xff00'0000;
constexpr std::uint32_t greenAndAlpha = 0xff00'ff00;

/// So many pixels are looked at together: most such stretches of a drawing are opaque or empty, which are shorter ways.
constexpr std::size_t stretchPixels = 32;

std::uint32_t pixelAt(const std::byte* row, std::size_t x) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + x * pixelBytes, pixelBytes);
    return pixel;
}

/// The bits that all pixels have, and those that any has.
struct CommonBits {
    std::uint32_t all = ~0U;
    std::uint32_t any = 0;
};

// To the end whatever it meets, so that many pixels are taken at a time.
CommonBits commonBits(const std::byte* row, std::size_t pixels) {
    CommonBits bits;
    for (std::size_t x = 0; x < pixels; ++x) {
        bits.all &= pixelAt(row, x);
        bits.any |= pixelAt(row, x);
    }
    return bits;
}

bool hasOpaqueAlpha(const CommonBits& bits) { return (bits.all & opaqueAlpha) == opaqueAlpha; }

std::uint32_t swapRedAndBlue(std::uint32_t pixel) {
    return (pixel & greenAndAlpha) | (pixel >> 16 & 0xffU) | (pixel & 0xffU) << 16;
}

// Signed, as the processor's wide comparisons and conversions to floats are.
std::int32_t byteAt(std::uint32_t pixel, int shift) { return static_cast<std::int32_t>(pixel >> shift & 0xffU); }

// The dividend's half keeps the product clear of the whole numbers, where an error in its last bit would count.
std::uint32_t straightColour(std::int32_t colour, std::int32_t alpha, float reciprocal) {
    const std::int32_t dividend = (colour < alpha ? colour : alpha) * 255 + alpha / 2;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>((static_cast<float>(dividend) + 0.5F) * reciprocal));
}

// Without a branch, so that several pixels are done at a time.
std::uint32_t straightPixel(std::uint32_t pixel) {
    const std::int32_t alpha = byteAt(pixel, 24);
    const float reciprocal = 1.0F / static_cast<float>((alpha < 1 ? 1 : alpha));
    const std::uint32_t red = straightColour(byteAt(pixel, 16), alpha, reciprocal);
    const std::uint32_t green = straightColour(byteAt(pixel, 8), alpha, reciprocal);
    const std::uint32_t blue = straightColour(byteAt(pixel, 0), alpha, reciprocal);
    return static_cast<std::uint32_t>(alpha) << 24 | blue << 16 | green << 8 | red;
}

template <typename Convert>
void convertPixels(const std::byte* __restrict from, std::byte* __restrict to, std::size_t pixels,
                   const Convert& convert) {
    for (std::size_t x = 0; x < pixels; ++x) {
        const std::uint32_t pixel = convert(pixelAt(from, x));
        std::memcpy(to + x * pixelBytes, &pixel, pixelBytes);
    }
}

void unpremultiplyStretch(const std::byte* bgra, std::byte* rgba, std::size_t pixels) {
    const CommonBits bits = commonBits(bgra, pixels);
    if (hasOpaqueAlpha(bits)) {
        convertPixels(bgra, rgba, pixels, swapRedAndBlue);
    } else if (bits.any == 0) {
        std::memset(rgba, 0, pixels * pixelBytes);
    } else {
        convertPixels(bgra, rgba, pixels, straightPixel);
    }
}

}  // namespace

void unpremultiply(const std::byte* bgra, std::byte* rgba, std::size_t pixels) {
    for (std::size_t x = 0; x < pixels; x += stretchPixels) {
        unpremultiplyStretch(bgra + x * pixelBytes, rgba + x * pixelBytes, std::min(stretchPixels, pixels - x));
    }
}

void takeOpaqueColours(const std::byte* bgra, std::byte* rgb, std::size_t pixels) {
    constexpr std::size_t colourBytes = 3;
    // Four bytes are stored for each pixel but the last; the next one's lie over the fourth.
    for (std::size_t x = 0; x < pixels; ++x) {
        const std::uint32_t pixel = swapRedAndBlue(pixelAt(bgra, x));
        std::memcpy(rgb + x * colourBytes, &pixel, x + 1 < pixels ? pixelBytes : colourBytes);
    }
}

bool isOpaque(const PremultipliedPicture& picture) {
    for (std::size_t y = 0; y < picture.height; ++y) {
        if (!hasOpaqueAlpha(commonBits(picture.pixels + y * picture.stride, picture.width))) {
            return false;
        }
    }
    return true;
}

}  // namespace sorvik::codecs
