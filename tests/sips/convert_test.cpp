// Real pictures through the real tool; libvips by itself is the judge.

#include <gtest/gtest.h>

#include "pictures.h"
#include "tool.h"

namespace sorvik::sips::test {
namespace {

using codecs::SipsStatus;
using vips::VImage;

struct Source {
    const char* name;
    int width;
    int height;
    bool judged = true;  ///< libvips by itself reads the same pixels
};

// Upright sizes of the first page or frame, the largest picture of an icon file; pages at 300 dots an
// inch, drawings at 96.
constexpr std::array sources = {
    Source{"jpeg/iptc.jpg", 640, 480},
    Source{"jpeg/icc_profile_big.jpg", 425, 250},
    Source{"jpeg/concert.jpg", 400, 267},
    Source{"png/sample16.png", 290, 442},
    Source{"png/tbgn2c16.png", 32, 32},
    Source{"png/indexed.png", 290, 442},
    Source{"png/pil123rgba.png", 162, 150},
    Source{"png/pil123p.png", 162, 150},
    Source{"tiff/multipage.tiff", 10, 10},
    Source{"tiff/g4-multi.tiff", 3307, 4677},
    Source{"tiff/rgb-3c-16b.tiff", 157, 151},
    Source{"tiff/quad-lzw-compat.tiff", 512, 384},
    Source{"tiff/quad-tile.jpg.tiff", 512, 384},
    Source{"tiff/BSG1.tiff", 635, 348},
    Source{"tiff/hopper_bigtiff.tif", 128, 128},
    Source{"tiff/tiff_strip_cmyk_jpeg.tif", 100, 100, false},
    Source{"gif/rotating-squares.gif", 80, 80},
    Source{"gif/cramps.gif", 159, 203},
    Source{"gif/transparent.gif", 200, 150},
    Source{"webp/1.webp", 550, 368},
    Source{"webp/transparent.webp", 200, 150},
    Source{"webp/rotating-squares.webp", 80, 80},
    Source{"heic/rgb.heif", 128, 128},
    Source{"heic/rgba.heif", 128, 128},
    Source{"avif/hopper.avif", 128, 128},
    Source{"avif/transparency.avif", 64, 64},
    Source{"bmp/rgb24.bmp", 127, 64},
    Source{"bmp/pal8rle.bmp", 127, 64},
    Source{"bmp/pal1.bmp", 127, 64},
    Source{"bmp/pal8topdown.bmp", 127, 64},
    Source{"bmp/rgba32.bmp", 127, 64},
    Source{"psd/hopper.psd", 128, 128, false},
    Source{"psd/16bit-rle.psd", 485, 484, false},
    Source{"psd/rgba.psd", 100, 100, false},
    Source{"ico/pillow.ico", 256, 256, false},
    Source{"ico/favicon.ico", 48, 48, false},
    Source{"ico/hopper_256x256.ico", 256, 256},
    Source{"ico/black_and_white.ico", 16, 16, false},
    Source{"svg/logo.svg", 736, 552, false},
    Source{"svg/logo.svgz", 736, 552, false},
    Source{"svg/blankpage.svg", 794, 1123, false},
    Source{"pdf/optipng.man.pdf", 2479, 3508, false},
};

TEST(Convert, EveryKindBecomesItsPixels) {
    const Folder folder;
    for (const Source& source : sources) {
        SCOPED_TRACE(source.name);
        const Outcome outcome = convert(sample(source.name), folder / "o.png", "png", {"-s", "optimize", "1"});
        ASSERT_EQ(outcome.status, 0) << outcome.error;
        EXPECT_EQ(outcome.error, "");
        const VImage result = read(folder / "o.png");
        EXPECT_EQ(result.width(), source.width);
        EXPECT_EQ(result.height(), source.height);
        if (source.judged) {
            EXPECT_GT(likeness(result, read(sample(source.name))), 60);
        }
    }
}

struct Target {
    const char* format;
    double likeness;  ///< in dB, to be reached from any source
};

constexpr std::array targets = {Target{"jpeg", 27}, Target{"png", 99},  Target{"tiff", 99}, Target{"gif", 16},
                                Target{"bmp", 45},  Target{"heic", 30}, Target{"webp", 27}};

TEST(Convert, EveryFormatHoldsThePicture) {
    constexpr std::array names = {"jpeg/iptc.jpg",
                                  "jpeg/hopper_gray.jpg",
                                  "png/sample16.png",
                                  "png/pil123rgba.png",
                                  "png/embedgravitybird.png",
                                  "gif/transparent.gif",
                                  "jpeg/orientation/Landscape_6.jpg"};
    const Folder folder;
    for (const char* name : names) {
        const VImage original = read(sample(name));
        const Outcome step = convert(sample(name), folder / "i.png", "png", {"-s", "purpose", "intermediate"});
        ASSERT_EQ(step.status, 0) << step.error;
        for (const Target& target : targets) {
            SCOPED_TRACE(std::string(name) + " to " + target.format);
            for (const auto& input : {sample(name), folder / "i.png"}) {
                const Outcome outcome = convert(input, folder / "o", target.format);
                ASSERT_EQ(outcome.status, 0) << outcome.error;
                EXPECT_GE(likeness(read(folder / "o"), original), target.likeness) << input;
            }
        }
    }
}

TEST(Convert, DeepSamplesStayDeepWhereTheyCan) {
    const Folder folder;
    const auto formatOf = [&](const char* format) {
        EXPECT_EQ(convert(sample("png/sample16.png"), folder / "o", format).status, 0);
        return read(folder / "o").format();
    };
    EXPECT_EQ(formatOf("png"), VIPS_FORMAT_USHORT);
    EXPECT_EQ(formatOf("tiff"), VIPS_FORMAT_USHORT);
    EXPECT_EQ(formatOf("heic"), VIPS_FORMAT_USHORT);
    EXPECT_EQ(formatOf("jpeg"), VIPS_FORMAT_UCHAR);
}

TEST(Convert, PdfHoldsThePagePixelForPixel) {
    const Folder folder;
    for (const char* name : {"jpeg/iptc.jpg", "jpeg/orientation/Landscape_8.jpg", "png/pil123rgba.png"}) {
        SCOPED_TRACE(name);
        ASSERT_EQ(convert(sample(name), folder / "o.pdf", "pdf").status, 0);
        const VImage page = VImage::pdfload((folder / "o.pdf").c_str());
        EXPECT_GT(likeness(page, read(sample(name))), 40);
    }
    const std::string jpeg = contentsOf(sample("jpeg/iptc.jpg"));
    ASSERT_EQ(convert(sample("jpeg/iptc.jpg"), folder / "o.pdf", "pdf").status, 0);
    EXPECT_NE(contentsOf(folder / "o.pdf").find(jpeg), std::string::npos) << "an upright JPEG is embedded as it is";
}

TEST(Convert, AllEightOrientationsComeOutUpright) {
    const Folder folder;
    const VImage upright = read(sample("jpeg/orientation/Landscape_1.jpg"));
    const auto corner = [](const VImage& image) { return image.extract_area(0, 0, 200, 150); };
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const auto name = "jpeg/orientation/Landscape_" + std::to_string(orientation) + ".jpg";
        for (const char* format : {"png", "jpeg", "tiff", "webp"}) {
            SCOPED_TRACE(name + " to " + format);
            ASSERT_EQ(convert(sample(name), folder / "o", format).status, 0);
            const VImage raw = VImage::new_from_file((folder / "o").c_str());
            EXPECT_LE(vips_image_get_orientation(raw.get_image()), 1);
            ASSERT_EQ(raw.width(), 600);
            EXPECT_GT(likeness(corner(raw), corner(upright)), 17);
        }
    }
}

TEST(Convert, TransparencyIsLaidOnWhite) {
    const Folder folder;
    ASSERT_EQ(convert(sample("svg/circle.svg"), folder / "o.jpg", "jpeg").status, 0);
    const std::vector<double> corner = read(folder / "o.jpg")(0, 0);
    for (const double sample : corner) {
        EXPECT_GT(sample, 230) << "white but for the ringing of eight pixels";
    }
}

TEST(Convert, CmykBecomesRgbWithoutItsProfile) {
    const Folder folder;
    for (const char* format : {"png", "jpeg", "tiff", "heic"}) {
        ASSERT_EQ(convert(sample("tiff/tiff_strip_cmyk_jpeg.tif"), folder / "o", format).status, 0);
        const VImage result = VImage::new_from_file((folder / "o").c_str());
        EXPECT_EQ(result.bands(), 3);
        EXPECT_EQ(result.format(), VIPS_FORMAT_UCHAR);
        EXPECT_EQ(result.get_typeof(VIPS_META_ICC_NAME), 0U);
    }
}

TEST(Convert, FullChromaOfAJpegIsKept) {
    const Folder folder;
    const VImage photo = read(sample("jpeg/iptc.jpg"));
    for (const bool full : {true, false}) {
        const auto input = folder / "i.jpg";
        photo.jpegsave(input.c_str(), VImage::option()->set("subsample_mode", full ? VIPS_FOREIGN_SUBSAMPLE_OFF
                                                                                   : VIPS_FOREIGN_SUBSAMPLE_ON));
        ASSERT_EQ(convert(input, folder / "o.jpg", "jpeg").status, 0);
        const VImage result = VImage::new_from_file((folder / "o.jpg").c_str());
        EXPECT_STREQ(result.get_string("jpeg-chroma-subsample"), full ? "4:4:4" : "4:2:0");
    }
}

TEST(Convert, QualityIsObeyed) {
    const Folder folder;
    for (const char* format : {"jpeg", "heic", "webp"}) {
        ASSERT_EQ(convert(sample("jpeg/iptc.jpg"), folder / "low", format, {"-s", "formatOptions", "30"}).status, 0);
        ASSERT_EQ(convert(sample("jpeg/iptc.jpg"), folder / "high", format, {"-s", "formatOptions", "95"}).status, 0);
        EXPECT_LT(3 * contentsOf(folder / "low").size(), 2 * contentsOf(folder / "high").size()) << format;
    }
}

TEST(Icons, TheWholePictureIsPressedIntoEachSquare) {
    const Folder folder;
    for (const char* name : {"png/embedgravitybird.png", "jpeg/hopper_gray.jpg", "svg/circle.svg"}) {
        SCOPED_TRACE(name);
        const Outcome outcome = convert(sample(name), folder / "o", "png", {"-s", "iconSizes", "16,48,256"});
        ASSERT_EQ(outcome.status, 0) << outcome.error;
        EXPECT_EQ(folder.entries(), 3U);
        for (const int side : {16, 48, 256}) {
            const VImage icon = VImage::pngload((folder / ("o." + std::to_string(side))).c_str());
            EXPECT_EQ(icon.width(), side);
            EXPECT_EQ(icon.height(), side);
            EXPECT_EQ(icon.format(), VIPS_FORMAT_UCHAR);
        }
    }
    const VImage small = read(folder / "o.16");
    EXPECT_LT(small(0, 0)[3], 128) << "transparent corners stay so";
}

}  // namespace
}  // namespace sorvik::sips::test
