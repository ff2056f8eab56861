#include <gtest/gtest.h>
#include <png.h>
#include <turbojpeg.h>
#include <zlib.h>

#include <cmath>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "drawings.h"
#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw::testing {
namespace {

using Bytes = std::vector<std::byte>;

std::string textOf(const Bytes& bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

struct Decoded {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels;  ///< 0xAARRGGBB, alpha straight
    [[nodiscard]] std::uint32_t at(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
};

Decoded decodedPng(const Bytes& file) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    EXPECT_NE(png_image_begin_read_from_memory(&png, file.data(), file.size()), 0);
    png.format = PNG_FORMAT_BGRA;
    Decoded result{static_cast<int>(png.width), static_cast<int>(png.height), {}};
    result.pixels.resize(std::size_t{png.width} * png.height);
    EXPECT_NE(png_image_finish_read(&png, nullptr, result.pixels.data(), 0, nullptr), 0);
    return result;
}

Decoded decodedJpeg(const Bytes& file) {
    const std::unique_ptr<void, decltype(&tjDestroy)> decoder(tjInitDecompress(), tjDestroy);
    const auto* data = reinterpret_cast<const unsigned char*>(file.data());
    Decoded result;
    int sampling = 0;
    int space = 0;
    EXPECT_EQ(tjDecompressHeader3(decoder.get(), data, file.size(), &result.width, &result.height, &sampling, &space),
              0);
    result.pixels.resize(static_cast<std::size_t>(result.width * result.height));
    EXPECT_EQ(tjDecompress2(decoder.get(), data, file.size(), reinterpret_cast<unsigned char*>(result.pixels.data()),
                            result.width, 0, result.height, TJPF_BGRA, 0),
              0);
    return result;
}

// The document with its compressed streams laid open.
std::string openedPdf(const Bytes& file) {
    const std::string text = textOf(file);
    std::string opened;
    std::size_t at = 0;
    for (std::size_t start = 0; (start = text.find("stream\n", at)) != std::string::npos;) {
        start += 7;
        opened += text.substr(at, start - at);
        at = text.find("endstream", start);
        std::string plain(1U << 22U, ' ');
        uLongf size = plain.size();
        if (uncompress(reinterpret_cast<Bytef*>(plain.data()), &size,
                       reinterpret_cast<const Bytef*>(text.data() + start), at - start) == Z_OK) {
            opened += plain.substr(0, size);
        }
        at += 9;
    }
    return opened + text.substr(at);
}

const SVG cross({10, 20},
                {setFill(red), fill(rectangle(0, 0, 5, 10)), setFill({0, 0, 1, 0.5F}), fill(rectangle(5, 10, 5, 10))});

TEST(Png, IsTransparentWhereNothingIsDrawn) {
    const Decoded png = decodedPng(cross.pngData(2));
    EXPECT_EQ(png.width, 20);
    EXPECT_EQ(png.height, 40);
    EXPECT_EQ(png.at(9, 19), redPixel);
    EXPECT_EQ(png.at(10, 19), 0U);
    EXPECT_TRUE(isNear(png.at(10, 20), 0x800000FF, 1));
}

TEST(Png, GrowsByInsets) {
    const Decoded png = decodedPng(cross.pngData(1, {1, 2, 3, 4}));
    EXPECT_EQ(png.width, 16);
    EXPECT_EQ(png.height, 24);
    EXPECT_EQ(png.at(2, 1), redPixel);
    EXPECT_EQ(png.at(1, 1), 0U);
    const Decoded shrunk = decodedPng(cross.pngData(1, {-5, 0, 0, 0}));
    EXPECT_EQ(shrunk.height, 15);
    EXPECT_EQ(shrunk.at(4, 4), redPixel);
    EXPECT_EQ(shrunk.at(4, 5), 0U);
}

TEST(Jpeg, HasAWhiteBackground) {
    const Decoded jpeg = decodedJpeg(cross.scaled(4).jpegData(1, 1));
    EXPECT_EQ(jpeg.width, 40);
    EXPECT_TRUE(isNear(jpeg.at(35, 5), 0xFFFFFFFF, 2));
    EXPECT_TRUE(isNear(jpeg.at(35, 75), 0xFF8080FF, 3));
    EXPECT_TRUE(isNear(jpeg.at(5, 5), redPixel, 3));
}

TEST(Jpeg, IsSmallerAtLowerQuality) {
    CGCommands noise;
    for (int i = 0; i < 400; ++i) {
        noise.push_back(setFill({static_cast<float>(i % 7) / 7, static_cast<float>(i % 5) / 5, 0.3F, 1}));
        noise.push_back(fill(rectangle(static_cast<float>(i % 20) * 5, static_cast<float>(i * 7 % 20) * 5, 6, 6)));
    }
    const SVG svg({100, 100}, noise);
    EXPECT_GT(svg.jpegData(1, 1).size(), 2 * svg.jpegData(1, 0.5).size());
    EXPECT_GT(svg.jpegData(1, 0.5).size(), svg.jpegData(1, 0).size());
}

template <typename Error>
std::string complaint(const SVG& svg, double scale = 1) {
    try {
        (void)svg.pngData(scale);
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

TEST(Canvas, HasLimits) {
    EXPECT_EQ(complaint<DrawingError>(SVG({0, 10}, {})), "Failed to create CGContext");
    EXPECT_EQ(complaint<DrawingError>(cross, -1), "Failed to create CGContext");
    EXPECT_EQ(complaint<DrawingError>(cross, std::nan("")), "Failed to create CGContext");
    EXPECT_NE(complaint<LimitError>(cross, 1e9), "");
    EXPECT_NE(complaint<LimitError>(SVG({20000, 20000}, {})), "");
    EXPECT_THROW((void)SVG({10, static_cast<double>(INFINITY)}, {}).pdfData(), DrawingError);
}

TEST(Pdf, HasOnePageOfTheDrawingsSize) {
    const std::string pdf = openedPdf(cross.pdfData());
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_NE(pdf.find("/Count 1"), std::string::npos);
    EXPECT_TRUE(std::regex_search(pdf, std::regex("/MediaBox \\[ 0 0 10 20 \\]")));
}

const CGTypes::Gradient fading = gradient(red, {0, 0, 1, 0.2F});
const CGTypes::Path all = rectangle(0, 0, 100, 100);
const CGTypes::Path part = rectangle(20, 20, 40, 40);

TEST(Pdf, KeepsShapesAsShapes) {
    struct Case {
        const char* name;
        const char* means;  ///< what the document draws it with
        CGCommands commands;
    };
    const CGTypes::Pattern small = pattern({{0, 0}, {5.3F, 5}}, {setFill(red), fill(rectangle(0, 0, 2, 2))});
    const CGTypes::Pattern large = pattern({{0, 0}, {60, 60}}, {setFill(red), fill(rectangle(0, 0, 2, 2))});
    const CGCommands halfMask{setBlend(BlendMode::destinationIn), pushLayer,  setBlend(BlendMode::copy),
                              setFill({0, 0, 0, 0.5F}),           fill(part), popLayer};
    const Case cases[] = {
        {"fill", "20 20 40 40 re f", {setFill({1, 0, 0, 0.5F}), fill(part)}},
        {"stroke", "20 20 40 40 re S", {setLine(4), stroke(part)}},
        {"fill with a gradient", "/ShadingType 2", {push, clip(part), linear(fading, {0, 0}, {100, 0}), pop}},
        {"stroke with a gradient", "20 20 40 40 re S", {clipStroke(part), radial(fading, {{50, 50}, 0, {50, 50}, 50})}},
        {"layer", "/Subtype /Form", {setAlpha(0.5F), pushLayer, setFill(red), fill(all), fill(part), popLayer}},
        {"mask", "/SMask", joined({{pushLayer, setFill(red), fill(all)}, halfMask, {popLayer}})},
        {"mask in a mask", "/SMask",
         joined({{pushLayer, pushLayer, setFill(red), fill(all)}, halfMask, {popLayer}, halfMask, {popLayer}})},
        {"mask of nothing",
         "%%EOF",
         {pushLayer, setFill(red), fill(all), setBlend(BlendMode::destinationIn), pushLayer, popLayer, popLayer}},
        {"many tiles", "/PatternType 1", {command(C::SetFillPattern{small}), fill(all)}},
        {"many faint tiles", "/PatternType 1", {setAlpha(0.5F), command(C::SetFillPattern{small}), fill(all)}},
        {"few faint tiles", "2 2 re f", {setAlpha(0.5F), command(C::SetFillPattern{large}), fill(all)}},
        {"clips", "20 20 40 40 re W n", {clip(part), setLine(4), clipStroke(all), setFill(red), fill(all)}},
    };
    for (const Case& c : cases) {
        const std::string pdf = openedPdf(SVG({100, 100}, c.commands).pdfData());
        EXPECT_EQ(pdf.find("/Subtype /Image"), std::string::npos) << c.name;
        EXPECT_NE(pdf.find(c.means), std::string::npos) << c.name;
    }
}

}  // namespace
}  // namespace sorvik::draw::testing
