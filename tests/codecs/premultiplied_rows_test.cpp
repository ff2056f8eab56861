#include "codecs/premultiplied_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <random>
#include <utility>

#include "test_pictures.h"

namespace sorvik::codecs::testing {
namespace {

using Pixel = std::array<unsigned, 4>;  // in the order of memory

Bytes bytesOf(const std::vector<Pixel>& pixels) {
    Bytes bytes;
    for (const auto& pixel : pixels) {
        for (const unsigned value : pixel) {
            bytes.push_back(static_cast<std::byte>(value));
        }
    }
    return bytes;
}

unsigned straight(unsigned colour, unsigned alpha) {
    return alpha == 0 ? 0 : (std::min(colour, alpha) * 255 + alpha / 2) / alpha;
}

Pixel straight(const Pixel& bgra) {
    const auto [blue, green, red, alpha] = bgra;
    return {straight(red, alpha), straight(green, alpha), straight(blue, alpha), alpha};
}

Bytes unpremultiplied(const std::vector<Pixel>& pixels) {
    Bytes rgba(pixels.size() * 4);
    unpremultiply(bytesOf(pixels).data(), rgba.data(), pixels.size());
    return rgba;
}

TEST(PremultipliedRows, EveryColourOfEveryAlphaComesOutNearest) {
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        std::vector<Pixel> pixels;
        std::vector<Pixel> expected;
        for (unsigned colour = 0; colour < 256; ++colour) {
            pixels.push_back({colour, 255 - colour, (colour + 85) % 256, alpha});
            expected.push_back(straight(pixels.back()));
        }
        EXPECT_TRUE(unpremultiplied(pixels) == bytesOf(expected)) << "alpha " << alpha;
    }
}

// Opaque, empty and half-transparent stretches that end anywhere.
std::vector<Pixel> mixedRow(std::size_t length, std::minstd_rand& random) {
    std::vector<Pixel> row;
    while (row.size() < length) {
        const std::array<unsigned, 3> alphas{255, 0, static_cast<unsigned>(random() % 256)};
        const unsigned alpha = alphas.at(random() % alphas.size());
        const auto colour = [&] { return static_cast<unsigned>(random() % (alpha + 1)); };
        const std::size_t end = std::min<std::size_t>(length, row.size() + random() % 40);
        while (row.size() < end) {
            row.push_back({colour(), colour(), colour(), alpha});
        }
    }
    return row;
}

TEST(PremultipliedRows, RowsOfEveryLengthAndKindAreConverted) {
    std::minstd_rand random(8);
    for (std::size_t length = 1; length < 200; ++length) {
        const auto row = mixedRow(length, random);
        std::vector<Pixel> expected;
        std::ranges::transform(row, std::back_inserter(expected), [](const Pixel& pixel) { return straight(pixel); });
        EXPECT_TRUE(unpremultiplied(row) == bytesOf(expected)) << length << " pixels";
    }
}

struct Canvas {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<Pixel> pixels;  ///< rows with a gap of one pixel behind each
    Bytes bytes;

    Canvas(std::uint32_t w, std::uint32_t h) : width(w), height(h), pixels((w + std::size_t{1}) * h) {
        std::minstd_rand random(w);
        for (auto& pixel : pixels) {
            pixel = {static_cast<unsigned>(random() % 256), static_cast<unsigned>(random() % 256), 7, 255};
        }
        for (std::size_t y = 0; y < h; ++y) {
            pixels[y * (w + std::size_t{1}) + w] = {0, 0, 0, 0};
        }
    }
    PremultipliedPicture picture() {
        bytes = bytesOf(pixels);
        return {bytes.data(), (width + std::size_t{1}) * 4, width, height};
    }
};

TEST(PremultipliedRows, OnePixelAnywhereDecidesOverAlpha) {
    for (const auto& [width, height] : {std::pair{1U, 1U}, {16U, 3U}, {37U, 5U}, {300U, 200U}}) {
        Canvas canvas(width, height);
        EXPECT_TRUE(isOpaque(canvas.picture()));
        for (const std::size_t place : {std::size_t{0}, canvas.pixels.size() / 2, canvas.pixels.size() - 2}) {
            const bool inGap = place % (width + std::size_t{1}) == width;
            const Pixel before = std::exchange(canvas.pixels[place], {3, 2, 1, 254});
            EXPECT_EQ(isOpaque(canvas.picture()), inGap) << width << " x " << height << ", pixel " << place;
            canvas.pixels[place] = before;
        }
    }
}

}  // namespace
}  // namespace sorvik::codecs::testing
