#include "sorvikdraw/engine/bitmap_decoder.h"

#include <png.h>
#include <turbojpeg.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

namespace sorvik::draw {
namespace {

using Bytes = std::span<const std::byte>;

std::size_t countOf(int width, int height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

Pixels blank(int width, int height) {
    return {width, height, std::make_unique_for_overwrite<std::uint32_t[]>(countOf(width, height)), false};
}

constexpr std::uint32_t opaqueAlpha = 0xFF000000;

// x / 255, rounded, for x up to 255 * 255.
constexpr std::uint32_t dividedBy255(std::uint32_t x) { return (x + 128 + ((x + 128) >> 8U)) >> 8U; }

void premultiply(Pixels& pixels) {
    std::uint32_t every = opaqueAlpha;
    for (std::uint32_t& pixel : std::span(pixels.values.get(), countOf(pixels.width, pixels.height))) {
        const std::uint32_t alpha = pixel >> 24U;
        const std::uint32_t red = dividedBy255((pixel >> 16U & 0xFFU) * alpha);
        const std::uint32_t green = dividedBy255((pixel >> 8U & 0xFFU) * alpha);
        const std::uint32_t blue = dividedBy255((pixel & 0xFFU) * alpha);
        every &= pixel;
        pixel = alpha << 24U | red << 16U | green << 8U | blue;
    }
    pixels.opaque = (every & opaqueAlpha) == opaqueAlpha;
}

std::optional<Pixels> decodePng(Bytes bytes, int width, int height) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&png, bytes.data(), bytes.size()) == 0) {
        return std::nullopt;
    }
    const std::unique_ptr<png_image, decltype(&png_image_free)> guard(&png, png_image_free);
    if (png.width != static_cast<png_uint_32>(width) || png.height != static_cast<png_uint_32>(height)) {
        return std::nullopt;
    }
    png.format = PNG_FORMAT_BGRA;
    png.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
    Pixels pixels = blank(width, height);
    if (png_image_finish_read(&png, nullptr, pixels.values.get(), width * 4, nullptr) == 0 ||
        png.warning_or_error > PNG_IMAGE_WARNING) {
        return std::nullopt;
    }
    premultiply(pixels);
    return pixels;
}

// A file of a few thousand bytes may ask for hundreds of passes over all of its pixels.
bool hasSaneScans(Bytes bytes, int width, int height) {
    constexpr std::size_t mostWork = 1'000'000'000;
    constexpr std::size_t alwaysFine = 20;
    std::size_t scans = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
        scans += bytes[i] == std::byte{0xFF} && bytes[i + 1] == std::byte{0xDA} ? 1U : 0U;
    }
    return scans <= alwaysFine || scans * countOf(width, height) <= mostWork;
}

// Decoders go on after damage and paint grey; a stray byte between two markers is no damage, though.
bool isWhole(tjhandle decoder, int result) {
    if (result == 0) {
        return true;
    }
    const std::string_view complaint = tjGetErrorStr2(decoder);
    return tjGetErrorCode(decoder) == TJERR_WARNING && complaint.find("extraneous bytes") != std::string_view::npos;
}

// Files with four inks hold them inverted, as the program that began with them did.
void inksToColours(Pixels& pixels) {
    for (std::uint32_t& pixel : std::span(pixels.values.get(), countOf(pixels.width, pixels.height))) {
        const std::uint32_t black = pixel >> 24U;
        const std::uint32_t red = dividedBy255((pixel & 0xFFU) * black);
        const std::uint32_t green = dividedBy255((pixel >> 8U & 0xFFU) * black);
        const std::uint32_t blue = dividedBy255((pixel >> 16U & 0xFFU) * black);
        pixel = opaqueAlpha | red << 16U | green << 8U | blue;
    }
}

std::optional<Pixels> decodeJpeg(Bytes bytes, int width, int height) {
    const std::unique_ptr<void, decltype(&tjDestroy)> decoder(tjInitDecompress(), tjDestroy);
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    int fileWidth = 0;
    int fileHeight = 0;
    int sampling = 0;
    int space = 0;
    if (!decoder ||
        tjDecompressHeader3(decoder.get(), data, bytes.size(), &fileWidth, &fileHeight, &sampling, &space) != 0 ||
        fileWidth != width || fileHeight != height || !hasSaneScans(bytes, width, height)) {
        return std::nullopt;
    }
    const bool inks = space == TJCS_CMYK || space == TJCS_YCCK;
    Pixels pixels = blank(width, height);
    const int result =
        tjDecompress2(decoder.get(), data, bytes.size(), reinterpret_cast<unsigned char*>(pixels.values.get()), width,
                      width * 4, height, inks ? TJPF_CMYK : TJPF_BGRA, TJFLAG_ACCURATEDCT);
    if (!isWhole(decoder.get(), result)) {
        return std::nullopt;
    }
    if (inks) {
        inksToColours(pixels);
    }
    pixels.opaque = true;
    return pixels;
}

// The sums of a block's channels, two to a number.
struct BlockSum {
    std::uint64_t alphaGreen = 0, redBlue = 0;

    void add(std::uint32_t pixel) {
        alphaGreen += (std::uint64_t{pixel >> 24U} << 32U) | (pixel >> 8U & 0xFFU);
        redBlue += (std::uint64_t{pixel >> 16U & 0xFFU} << 32U) | (pixel & 0xFFU);
    }
    [[nodiscard]] std::uint32_t mean(std::uint64_t count) const {
        const auto of = [count](std::uint64_t sum) { return static_cast<std::uint32_t>((sum + count / 2) / count); };
        constexpr std::uint64_t low = 0xFFFFFFFF;
        return of(alphaGreen >> 32U) << 24U | of(redBlue >> 32U) << 16U | of(alphaGreen & low) << 8U |
               of(redBlue & low);
    }
};

}  // namespace

std::optional<Pixels> decodeBitmap(const CGImage& image) {
    if (!image.bitmap.bytes || image.width <= 0 || image.height <= 0) {
        return std::nullopt;
    }
    switch (image.bitmap.format) {
        case layer_tree::Bitmap::Format::jpeg:
            return decodeJpeg(*image.bitmap.bytes, image.width, image.height);
        case layer_tree::Bitmap::Format::png:
            return decodePng(*image.bitmap.bytes, image.width, image.height);
    }
    return std::nullopt;
}

Pixels reduced(const Pixels& pixels, int columns, int rows) {
    const int width = (pixels.width + columns - 1) / columns;
    const int height = (pixels.height + rows - 1) / rows;
    Pixels result = blank(width, height);
    result.opaque = pixels.opaque;
    std::uint32_t* to = result.values.get();
    for (int y = 0; y < height; ++y) {
        const int bottom = std::min((y + 1) * rows, pixels.height);
        for (int x = 0; x < width; ++x) {
            const int right = std::min((x + 1) * columns, pixels.width);
            BlockSum sum;
            for (int row = y * rows; row < bottom; ++row) {
                const std::uint32_t* from = pixels.values.get() + countOf(pixels.width, row);
                std::for_each(from + std::ptrdiff_t{x} * columns, from + right,
                              [&sum](std::uint32_t pixel) { sum.add(pixel); });
            }
            *to++ = sum.mean(countOf(right - x * columns, bottom - y * rows));
        }
    }
    return result;
}

}  // namespace sorvik::draw
