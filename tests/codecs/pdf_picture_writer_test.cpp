#include "codecs/pdf_picture_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "test_pictures.h"

namespace sorvik::codecs::testing {
namespace {

Bytes encodePdf(const TestPicture& picture, const PictureMetadata& metadata = {}) {
    return encode(picture, [&](ByteSink& sink) { return makePdfPictureWriter(sink, picture.layout, metadata); });
}

// The pixels of the page at one pixel a point, red, green and blue, as Ghostscript draws it.
Bytes renderedPixels(const Bytes& pdf, std::size_t size) {
    const TemporaryFile file(pdf);
    const auto image = outputOf(
        "/usr/bin/gs -q -dSAFER -dBATCH -dNOPAUSE -r72 -sDEVICE=ppmraw -sOutputFile=%stdout -sstdout=%stderr " +
        file.path());
    return image.size() < size ? Bytes() : Bytes(image.end() - static_cast<std::ptrdiff_t>(size), image.end());
}

std::string_view textOf(const Bytes& bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

// Every offset in the table leads to the object of its number, and the table is where the end says.
void expectTrueTable(const Bytes& pdf) {
    const std::string text(textOf(pdf));
    const std::size_t start = std::stoul(text.substr(text.rfind("startxref\n") + 10));
    ASSERT_EQ(text.compare(start, 7, "xref\n0 "), 0);
    const std::size_t count = std::stoul(text.substr(start + 7));
    const std::size_t entries = text.find('\n', start + 7) + 1;
    for (std::size_t number = 1; number < count; ++number) {
        const std::size_t offset = std::stoul(text.substr(entries + 20 * number, 10));
        EXPECT_EQ(text.compare(offset, 8, (std::to_string(number) + " 0 obj\n      ").substr(0, 8)), 0) << number;
    }
}

TEST(PdfPictureWriter, IsDrawnPixelByPixel) {
    for (const auto& [width, height] : {std::pair{5U, 3U}, {301U, 199U}}) {
        for (const int channels : {1, 3}) {
            const auto picture = makePicture(width, height, channels, 8);
            const auto pdf = encodePdf(picture);
            expectTrueTable(pdf);
            Bytes colours;
            for (std::size_t i = 0; i < picture.pixels.size() * (channels == 1 ? 3 : 1); ++i) {
                colours.push_back(picture.pixels[channels == 1 ? i / 3 : i]);
            }
            EXPECT_TRUE(renderedPixels(pdf, colours.size()) == colours) << channels;
        }
    }
}

TEST(PdfPictureWriter, SixteenBitsKeepTheirUpperByte) {
    const auto picture = makePicture(40, 30, 3, 16);
    const auto pixels = renderedPixels(encodePdf(picture), picture.pixels.size() / 2);
    ASSERT_EQ(pixels.size() * 2, picture.pixels.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        EXPECT_NEAR(std::to_integer<int>(pixels[i]), std::to_integer<int>(picture.pixels[2 * i + 1]), 1);
    }
}

TEST(PdfPictureWriter, AlphaLetsThePageThrough) {
    const auto picture = makePicture(40, 30, 4, 8);
    const auto pdf = encodePdf(picture);
    expectTrueTable(pdf);
    const auto pixels = renderedPixels(pdf, std::size_t{40} * 30 * 3);
    ASSERT_FALSE(pixels.empty());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const int colour = std::to_integer<int>(picture.pixels[i / 3 * 4 + i % 3]);
        const int alpha = std::to_integer<int>(picture.pixels[i / 3 * 4 + 3]);
        EXPECT_NEAR(std::to_integer<int>(pixels[i]), 255 + (colour - 255) * alpha / 255, 2);
    }
}

TEST(PdfPictureWriter, CarriesProfileAndXmp) {
    const auto metadata = makeMetadata("RGB ");
    const auto pdf = encodePdf(makePicture(8, 8, 3, 8), metadata);
    expectTrueTable(pdf);
    const auto text = textOf(pdf);
    EXPECT_NE(text.find("/N 3 /Alternate /DeviceRGB"), std::string_view::npos);
    EXPECT_NE(text.find("/Metadata "), std::string_view::npos);
    EXPECT_NE(text.find(textOf(metadata.xmp)), std::string_view::npos);
    EXPECT_EQ(textOf(encodePdf(makePicture(8, 8, 1, 8), metadata)).find("/ICCBased"), std::string_view::npos);
}

TEST(PdfPictureWriter, EmbedsAJpegAsItStands) {
    const auto picture = makePicture(64, 48, 3, 8);
    const TemporaryFile pixels(picture.pixels);
    const auto jpeg = outputOf("/usr/bin/convert -size 64x48 -depth 8 rgb:" + pixels.path() + " -quality 98 jpeg:-");
    ASSERT_FALSE(jpeg.empty());
    BufferSink sink;
    writeJpegPdf(sink, picture.layout, {}, jpeg);
    expectTrueTable(sink.bytes());
    const auto& pdf = sink.bytes();
    EXPECT_NE(std::search(pdf.begin(), pdf.end(), jpeg.begin(), jpeg.end()), pdf.end());

    const auto drawn = renderedPixels(pdf, picture.pixels.size());
    const TemporaryFile jpegFile(jpeg);
    const auto expected = outputOf("/usr/bin/convert jpeg:" + jpegFile.path() + " -depth 8 rgb:-");
    ASSERT_EQ(drawn.size(), expected.size());
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        EXPECT_NEAR(std::to_integer<int>(drawn[i]), std::to_integer<int>(expected[i]), 6);
    }
    EXPECT_THROW(writeJpegPdf(sink, {64, 48, 4, 8}, {}, jpeg), std::invalid_argument);
}

}  // namespace
}  // namespace sorvik::codecs::testing
