#include "pictures.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "drawings.h"
#include "sorvikdraw/engine/bitmap_decoder.h"

namespace sorvik::draw::testing {
namespace {

// Red, half transparent green / blue, nothing.
PngMaking fourPixels() { return {2, 2, 8, false, {255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 255, 9, 9, 9, 0}}; }

C draw(const CGTypes::Image& image, layer_tree::Rect in) { return command(C::Draw{image, in}); }

TEST(Pictures, AreDecodedFromEveryKindOfFile) {
    for (const int bits : {8, 16}) {
        for (const bool interlaced : {false, true}) {
            PngMaking making = fourPixels();
            making.bits = bits;
            making.interlaced = interlaced;
            const auto pixels = decodeBitmap(*png(making));
            ASSERT_TRUE(pixels);
            EXPECT_EQ(std::vector(pixels->values.get(), pixels->values.get() + 4),
                      (std::vector<std::uint32_t>{redPixel, 0x80008000, bluePixel, 0}));
        }
    }
    const auto pixels = decodeBitmap(*jpeg(20, 10, 0x2040C0));
    ASSERT_TRUE(pixels);
    EXPECT_TRUE(isNear(pixels->values[199], 0xFF2040C0, 2));
    EXPECT_TRUE(pixels->opaque);
}

TEST(Pictures, StandUprightInTheirRect) {
    const Raster raster = drawn({translate(4, 0), draw(png(fourPixels()), {{4, 8}, {16, 16}})}, 40, 40);
    EXPECT_EQ(raster.row(8)[8], redPixel);
    EXPECT_TRUE(isNear(raster.row(8)[23], 0x80008000, 1));
    EXPECT_EQ(raster.row(23)[8], bluePixel);
    EXPECT_EQ(raster.row(23)[23], 0U);
    EXPECT_EQ(raster.row(8)[7], 0U);
    EXPECT_EQ(raster.row(24)[8], 0U);
}

TEST(Pictures, TakePartInAlphaAndBlending) {
    const CGTypes::Image image = jpeg(8, 8, 0xFF0000);
    const Raster raster =
        drawn({setFill(green), fill(rectangle(0, 0, 40, 40)), setAlpha(0.5F), draw(image, {{0, 0}, {10, 10}}),
               setBlend(BlendMode::copy), draw(image, {{20, 0}, {10, 10}})},
              40, 40);
    EXPECT_TRUE(isNear(raster.row(5)[5], 0xFF807F00, 3));
    EXPECT_TRUE(isNear(raster.row(5)[25], 0x80800000, 3));
}

// A filter that looks at only some of the pixels would take on their colour.
TEST(Pictures, AreAveragedWhenTheyShrink) {
    PngMaking making{301, 200, 8, false, {}};
    for (int i = 0; i < 301 * 200; ++i) {
        const auto white = static_cast<std::uint8_t>(i % 301 % 10 == 0 ? 255 : 0);
        making.rgba.insert(making.rgba.end(), {white, white, white, 255});
    }
    const Raster raster = drawn({draw(png(making), {{0, 0}, {3, 2}}), translate(0, 10), command(C::Rotate{0.2F}),
                                 draw(png(making), {{5, 5}, {30, 20}})},
                                40, 40);
    EXPECT_TRUE(isNear(raster.row(1)[1], 0xFF1A1A1A, 6));
    EXPECT_TRUE(isNear(raster.row(27)[18], 0xFF1A1A1A, 6));
}

TEST(Pictures, ThatAreDamagedDrawNothing) {
    PngMaking making = fourPixels();
    making.width = making.height = 64;
    making.rgba.assign(std::size_t{64} * 64 * 4, 200);
    CGImage lying = *png(fourPixels());
    lying.width = 3;
    CGImage mistaken = *png(fourPixels());
    mistaken.bitmap.format = layer_tree::Bitmap::Format::jpeg;
    for (const CGTypes::Image& image :
         {truncated(png(making), 30), truncated(jpeg(64, 64, 0xFF0000), 40), truncated(jpeg(64, 64, 0xFF0000), 600),
          CGTypes::Image(lying), CGTypes::Image(mistaken), CGTypes::Image(CGImage{})}) {
        const Raster raster = drawn({draw(image, {{0, 0}, {40, 40}})}, 40, 40);
        EXPECT_EQ(pixelsOf(raster), std::vector<std::uint32_t>(1600));
    }
}

TEST(Pictures, MayBeDrawnOftenAndInBands) {
    CGCommands commands;
    const CGTypes::Image image = png(fourPixels());
    for (int i = 0; i < 100; ++i) {
        commands.push_back(draw(image, {{static_cast<float>(i % 10) * 4, static_cast<float>(i / 10) * 4}, {4, 4}}));
    }
    EXPECT_EQ(pixelsOf(drawn(commands, 40, 40, 1)), pixelsOf(drawn(commands, 40, 40, 4)));
}

TEST(Pictures, StayTheirFilesInDocuments) {
    const CGTypes::Image image = jpeg(64, 64, 0x2040C0);
    const SVG svg({100, 100}, {draw(image, {{0, 0}, {50, 50}}), draw(image, {{50, 50}, {50, 50}})});
    const auto pdf = svg.pdfData();
    const auto& file = *image->bitmap.bytes;
    const auto found = std::search(pdf.begin(), pdf.end(), file.begin(), file.end());
    ASSERT_NE(found, pdf.end());
    EXPECT_EQ(std::search(found + 1, pdf.end(), file.begin(), file.end()), pdf.end()) << "twice";
}

}  // namespace
}  // namespace sorvik::draw::testing
