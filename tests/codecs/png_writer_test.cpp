#include "codecs/png_writer.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <iterator>
#include <random>
#include <tuple>

#include "png_reading.h"

namespace sorvik::codecs::testing {
namespace {

Bytes encodePng(const TestPicture& picture, const PngOptions& options, const PictureMetadata& metadata = {}) {
    return encode(picture, [&](ByteSink& sink) { return makePngWriter(sink, picture.layout, metadata, options); });
}

// What libpng hands out for a palette: colours, with alpha where there is any.
TestPicture asColours(const TestPicture& picture, bool alpha) {
    TestPicture colours{picture.layout, {}};
    colours.layout.channels = alpha ? 4 : 3;
    const auto channels = static_cast<std::size_t>(picture.layout.channels);
    for (std::size_t i = 0; i < picture.pixels.size(); i += channels) {
        for (std::size_t c = 0; c < 3; ++c) {
            colours.pixels.push_back(picture.pixels[i + (channels >= 3 ? c : 0)]);
        }
        if (alpha) {
            colours.pixels.push_back(picture.pixels[i + channels - 1]);
        }
    }
    return colours;
}

class EveryLayout : public ::testing::TestWithParam<std::tuple<int, int, PngPurpose>> {};

TEST_P(EveryLayout, ComesBackFromLibpngAsItWas) {
    const auto [channels, bits, purpose] = GetParam();
    // The widest does not fit one stored block a row; the sides are odd on purpose.
    for (const auto& [width, height] : {std::pair{1U, 1U}, {7U, 5U}, {333U, 211U}, {22001U, 3U}}) {
        const auto picture = makePicture(width, height, channels, bits);
        const auto decoded = decodePng(encodePng(picture, {purpose, 6}));
        EXPECT_EQ(decoded.complaint, "");
        const auto expected = decoded.palette ? asColours(picture, picture.layout.hasAlpha()) : picture;
        EXPECT_EQ(decoded.picture.layout, expected.layout);
        EXPECT_TRUE(decoded.picture.pixels == expected.pixels) << width << " x " << height;
    }
}

INSTANTIATE_TEST_SUITE_P(Png, EveryLayout,
                         ::testing::Combine(::testing::Values(1, 2, 3, 4), ::testing::Values(8, 16),
                                            ::testing::Values(PngPurpose::intermediate, PngPurpose::quick,
                                                              PngPurpose::kept)));

struct PaletteCase {
    int channels;
    unsigned colours;
    bool palette;
    int bitDepth;
};

TEST(PngWriter, UsesAPaletteWhereItLosesNothing) {
    constexpr PaletteCase cases[]{{3, 2, true, 1},    {3, 4, true, 2},    {3, 16, true, 4}, {3, 17, true, 8},
                                  {3, 256, true, 8},  {3, 257, false, 8}, {4, 2, true, 1},  {4, 256, true, 8},
                                  {4, 257, false, 8}, {2, 200, true, 8},  {1, 3, true, 2},  {1, 16, true, 4},
                                  {1, 17, false, 8},  {1, 256, false, 8}};
    for (const auto& expected : cases) {
        SCOPED_TRACE(::testing::Message() << expected.channels << " channels, " << expected.colours << " colours");
        const auto picture = makeFewColours(61, 37, expected.channels, expected.colours);
        const auto decoded = decodePng(encodePng(picture, {PngPurpose::kept, 6}));
        EXPECT_EQ(decoded.complaint, "");
        EXPECT_EQ(decoded.palette, expected.palette);
        EXPECT_EQ(decoded.bitDepth, expected.bitDepth);
        const auto colours = expected.palette ? asColours(picture, picture.layout.hasAlpha()) : picture;
        EXPECT_TRUE(decoded.picture.pixels == colours.pixels);
    }
}

TEST(PngWriter, LeavesThePaletteWhenTheLastPixelIsOneColourTooMany) {
    auto picture = makeFewColours(64, 64, 3, 256);
    picture.pixels.back() ^= std::byte{0x55};
    const auto decoded = decodePng(encodePng(picture, {PngPurpose::kept, 6}));
    EXPECT_FALSE(decoded.palette);
    EXPECT_TRUE(decoded.picture.pixels == picture.pixels);
}

TEST(PngWriter, KeepsAGreyProfileAndThereforeNoPalette) {
    const auto picture = makeFewColours(20, 20, 2, 4);
    const auto metadata = makeMetadata("GRAY");
    const auto decoded = decodePng(encodePng(picture, {PngPurpose::kept, 6}, metadata));
    EXPECT_EQ(decoded.complaint, "");
    EXPECT_FALSE(decoded.palette);
    EXPECT_EQ(decoded.metadata.icc, metadata.icc);
}

TEST(PngWriter, EveryLevelGivesTheSamePixels) {
    const auto picture = makePicture(200, 100, 3, 8);
    for (int level = 0; level <= 9; ++level) {
        EXPECT_TRUE(decodePng(encodePng(picture, {PngPurpose::kept, level})).picture.pixels == picture.pixels) << level;
    }
}

TEST(PngWriter, StreamsPicturesTooLargeToBeCompressedAtOnce) {
    const auto picture = makePicture(6000, 2900, 4, 8);  // 66 MiB
    const auto file = encodePng(picture, {PngPurpose::kept, 6});
    const auto decoded = decodePng(file);
    EXPECT_EQ(decoded.complaint, "");
    EXPECT_TRUE(decoded.picture.pixels == picture.pixels);
    EXPECT_LT(file.size(), picture.pixels.size() * 9 / 10);
}

// A disc with soft edges on a plain ground.
TestPicture makeDrawing() {
    TestPicture picture{{.width = 800, .height = 600, .channels = 4}, {}};
    for (int y = 0; y < 600; ++y) {
        for (int x = 0; x < 800; ++x) {
            const double inside = 200.5 - std::hypot(x - 400, y - 300);
            const auto cover = static_cast<std::uint8_t>(std::clamp(inside, 0.0, 1.0) * 255);
            for (const std::uint8_t value : {std::uint8_t{200}, cover, std::uint8_t{30}, std::uint8_t{255}}) {
                picture.pixels.push_back(std::byte{value});
            }
        }
    }
    return picture;
}

// Noise along a row, and each row one more than the one above.
TestPicture makeEvenChange() {
    auto picture = makeFewColours(3000, 200, 3, 5000);
    const std::size_t rowBytes = picture.layout.rowBytes();
    for (std::size_t i = rowBytes; i < picture.pixels.size(); ++i) {
        picture.pixels[i] = static_cast<std::byte>(std::to_integer<unsigned>(picture.pixels[i - rowBytes]) + 1);
    }
    return picture;
}

TestPicture makeNoise() {
    TestPicture picture{{.width = 300, .height = 300, .channels = 4}, {}};
    std::mt19937 random(1);
    std::generate_n(std::back_inserter(picture.pixels), 360'000, [&] { return static_cast<std::byte>(random()); });
    return picture;
}

// How large libpng makes the same picture unless told otherwise.
double sizeFromLibpng(const TestPicture& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = picture.layout.width;
    image.height = picture.layout.height;
    image.format = picture.layout.channels == 4 ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    png_alloc_size_t size = 0;
    EXPECT_NE(png_image_write_get_memory_size(image, size, 0, picture.pixels.data(), 0, nullptr), 0);
    return static_cast<double>(size);
}

struct QuickCase {
    const char* name;
    TestPicture picture;
    double mostOfLibpng;  ///< how large it may be beside libpng's
};

TEST(PngWriter, QuickPicturesAreAboutAsSmallAsLibpngs) {
    const QuickCase cases[]{{"drawing", makeDrawing(), 2},
                            {"rows that change evenly", makeEvenChange(), 4},
                            {"photograph", makePicture(700, 500, 3, 8), 1.15},
                            {"noise", makeNoise(), 1.01}};
    for (const auto& [name, picture, mostOfLibpng] : cases) {
        const auto size = static_cast<double>(encodePng(picture, {PngPurpose::quick}).size());
        EXPECT_LT(size, mostOfLibpng * sizeFromLibpng(picture)) << name;
    }
}

TEST(PngWriter, CarriesTheMetadata) {
    const auto picture = makePicture(9, 9, 3, 8);
    const auto metadata = makeMetadata("RGB ");
    for (const auto purpose : {PngPurpose::intermediate, PngPurpose::quick, PngPurpose::kept}) {
        const auto decoded = decodePng(encodePng(picture, {purpose, 6}, metadata));
        EXPECT_EQ(decoded.complaint, "");
        EXPECT_TRUE(decoded.metadata.icc == metadata.icc);
        EXPECT_EQ(decoded.metadata.exif, metadata.exif);
        EXPECT_EQ(decoded.metadata.xmp, metadata.xmp);
        EXPECT_NEAR(decoded.metadata.dotsPerInchX, 300, 0.02);
        EXPECT_NEAR(decoded.metadata.dotsPerInchY, 72, 0.02);
        const auto& iptc = decoded.metadata.iptc;
        EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(iptc.data()), iptc.size()),
                  "\niptc\n      58\n1c0205002d546865207469746c65206f662061207069637475726520746861742066696c\n"
                  "6c732074776f206c696e65732e2e1c021900036b6579\n");
    }
    EXPECT_TRUE(decodePng(encodePng(picture, {}, makeMetadata("CMYK"))).metadata.icc.empty());
}

TEST(PngWriter, SaysThatTheDiskIsFull) {
    const auto picture = makePicture(300, 300, 3, 8);
    for (const auto purpose : {PngPurpose::intermediate, PngPurpose::quick, PngPurpose::kept}) {
        const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
        try {
            FileSink sink(full);
            writePicture(*makePngWriter(sink, picture.layout, {}, {purpose, 6}), picture);
            sink.flush();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const SinkError& error) {
            EXPECT_EQ(error.errorNumber(), ENOSPC);
            EXPECT_STREQ(error.what(), "No space left on device");
        }
        ::close(full);
    }
}

TEST(PngWriter, RefusesLayoutsAndRowCountsThatAreNone) {
    BufferSink sink;
    for (const PixelLayout& layout : {PixelLayout{0, 1, 3, 8}, {1, 0x8000'0000U, 3, 8}, {1, 1, 5, 8}, {1, 1, 3, 12}}) {
        EXPECT_THROW(static_cast<void>(makePngWriter(sink, layout, {}, {})), std::invalid_argument);
    }
    const auto picture = makePicture(8, 8, 3, 8);
    for (const auto purpose : {PngPurpose::intermediate, PngPurpose::quick, PngPurpose::kept}) {
        EXPECT_THROW(makePngWriter(sink, picture.layout, {}, {purpose, 6})->finish(), std::logic_error);
        const auto writer = makePngWriter(sink, picture.layout, {}, {purpose, 6});
        writer->writeRows(picture.pixels.data(), picture.layout.rowBytes(), 8);
        EXPECT_THROW(writer->writeRows(picture.pixels.data(), picture.layout.rowBytes(), 1), std::logic_error);
    }
}

}  // namespace
}  // namespace sorvik::codecs::testing
