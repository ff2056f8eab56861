#include "codecs/premultiplied_png.h"

#include <gtest/gtest.h>

#include <span>

#include "png_reading.h"

namespace sorvik::codecs::testing {
namespace {

// Rows of 32-bit pixels, alpha on top, with a gap of one pixel behind each.
struct Canvas {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint32_t> pixels;

    Canvas(std::uint32_t w, std::uint32_t h) : width(w), height(h), pixels((w + std::size_t{1}) * h) {}

    [[nodiscard]] std::uint32_t& at(std::size_t x, std::size_t y) { return pixels[y * (width + std::size_t{1}) + x]; }
    [[nodiscard]] PremultipliedPicture picture() const {
        return {std::as_bytes(std::span(pixels)).data(), (width + std::size_t{1}) * 4, width, height};
    }
};

// So many colours in stretches, all of them met by the end of the last row, with the same alpha.
Canvas canvasOf(std::uint32_t width, std::uint32_t height, std::uint32_t colours, std::uint32_t alpha) {
    Canvas canvas(width, height);
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const std::uint32_t colour = (y * width + x) * 2 / 3 % colours;
            canvas.at(x, y) = alpha << 24 | (colour % 64) << 16 | (colour / 64) << 8 | 5;
        }
    }
    return canvas;
}

Bytes straightPixels(const Canvas& canvas, int channels) {
    Bytes pixels;
    for (std::size_t y = 0; y < canvas.height; ++y) {
        Bytes row(canvas.width * std::size_t{4});
        unpremultiply(canvas.picture().pixels + y * canvas.picture().stride, row.data(), canvas.width);
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (channels == 4 || i % 4 != 3) {
                pixels.push_back(row[i]);
            }
        }
    }
    return pixels;
}

struct ColourCase {
    std::uint32_t colours;
    std::uint32_t alpha;
    bool palette;
    int bitDepth;
};

TEST(PremultipliedPng, HoldsWhatTheColoursNeed) {
    constexpr ColourCase cases[]{{1, 255, true, 1},    {2, 200, true, 1},   {3, 255, true, 2},    {16, 255, true, 4},
                                 {16, 128, true, 4},   {17, 255, true, 8},  {256, 255, true, 8},  {256, 254, true, 8},
                                 {257, 255, false, 8}, {257, 64, false, 8}, {4000, 255, false, 8}};
    for (const auto& [colours, alpha, palette, bitDepth] : cases) {
        SCOPED_TRACE(::testing::Message() << colours << " colours, alpha " << alpha);
        const auto canvas = canvasOf(101, 67, colours, alpha);
        BufferSink sink;
        writePremultipliedPng(sink, canvas.picture(), makeMetadata("RGB "));
        const auto decoded = decodePng(sink.bytes());
        EXPECT_EQ(decoded.complaint, "");
        EXPECT_EQ(decoded.palette, palette);
        EXPECT_EQ(decoded.bitDepth, bitDepth);
        const int channels = alpha == 255 ? 3 : 4;
        EXPECT_EQ(decoded.picture.layout, (PixelLayout{101, 67, channels, 8}));
        EXPECT_TRUE(decoded.picture.pixels == straightPixels(canvas, channels));
        EXPECT_FALSE(decoded.metadata.icc.empty());
    }
}

TEST(PremultipliedPng, KeepsAlphaForTheSakeOfOnePixel) {
    auto canvas = canvasOf(301, 200, 4000, 255);
    canvas.at(300, 199) = 0x2801'0203;
    BufferSink sink;
    writePremultipliedPng(sink, canvas.picture());
    const auto decoded = decodePng(sink.bytes());
    EXPECT_EQ(decoded.picture.layout.channels, 4);
    EXPECT_TRUE(decoded.picture.pixels == straightPixels(canvas, 4));
}

TEST(PremultipliedPng, NoPictureIsRefused) {
    BufferSink sink;
    EXPECT_THROW(writePremultipliedPng(sink, {}), std::invalid_argument);
    EXPECT_TRUE(sink.bytes().empty());
}

}  // namespace
}  // namespace sorvik::codecs::testing
