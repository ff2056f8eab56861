#include "codecs/jpeg_writer.h"

#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <cmath>
#include <cstdlib>
#include <memory>

namespace sorvik::codecs::testing {
namespace {

using Bytes = std::vector<std::byte>;

struct DecodedJpeg {
    int width = 0;
    int height = 0;
    int subsampling = -1;
    Bytes bgrx;
};

DecodedJpeg decodeJpeg(const Bytes& file) {
    DecodedJpeg decoded;
    int colourSpace = 0;
    const auto* bytes = reinterpret_cast<const unsigned char*>(file.data());
    const std::unique_ptr<void, decltype(&tjDestroy)> reader(tjInitDecompress(), &tjDestroy);
    EXPECT_EQ(tjDecompressHeader3(reader.get(), bytes, file.size(), &decoded.width, &decoded.height,
                                  &decoded.subsampling, &colourSpace),
              0);
    decoded.bgrx.resize(static_cast<std::size_t>(decoded.width) * static_cast<std::size_t>(decoded.height) * 4);
    EXPECT_EQ(tjDecompress2(reader.get(), bytes, file.size(), reinterpret_cast<unsigned char*>(decoded.bgrx.data()),
                            decoded.width, 0, decoded.height, TJPF_BGRX, TJFLAG_ACCURATEDCT),
              0);
    return decoded;
}

// Slopes of three different colours, with junk in the fourth byte and behind each row.
struct Slopes {
    OpaquePicture picture;
    Bytes bytes;

    Slopes(std::uint32_t width, std::uint32_t height) {
        const std::size_t stride = width * std::size_t{4} + 20;
        bytes.assign(stride * height, std::byte{0xa5});
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x) {
                std::byte* const pixel = bytes.data() + y * stride + 4 * x;
                pixel[0] = static_cast<std::byte>(200 * x / width);
                pixel[1] = static_cast<std::byte>(100 + 100 * y / height);
                pixel[2] = static_cast<std::byte>(250 - 200 * x / width);
                pixel[3] = static_cast<std::byte>(x * y);
            }
        }
        picture = {bytes.data(), stride, width, height};
    }
};

// The mean distance of a colour's value.
double meanError(const OpaquePicture& picture, const DecodedJpeg& decoded) {
    double sum = 0;
    for (std::size_t y = 0; y < picture.height; ++y) {
        for (std::size_t i = 0; i < picture.width * std::size_t{4}; ++i) {
            const int value = std::to_integer<int>(picture.pixels[y * picture.stride + i]);
            const int got = std::to_integer<int>(decoded.bgrx[y * picture.width * 4 + i]);
            sum += i % 4 == 3 ? 0 : std::abs(value - got);
        }
    }
    return sum / (3.0 * picture.width * picture.height);
}

TEST(JpegWriter, PicturesOfEverySideComeBackInTheirColours) {
    for (const auto& [width, height] : {std::pair{1U, 1U}, {7U, 3U}, {16U, 16U}, {333U, 211U}, {1U, 3000U}}) {
        const Slopes slopes(width, height);
        const auto decoded = decodeJpeg(encodeJpeg(slopes.picture, 95));
        EXPECT_EQ(decoded.width, static_cast<int>(width));
        EXPECT_EQ(decoded.height, static_cast<int>(height));
        EXPECT_LT(meanError(slopes.picture, decoded), 2.5) << width << " x " << height;
    }
}

struct ChromaCase {
    int quality;
    Chroma chroma;
    int subsampling;
};

TEST(JpegWriter, ChromaFollowsTheQualityUnlessItIsAskedFor) {
    constexpr ChromaCase cases[]{{1, Chroma::byQuality, TJSAMP_420},  {89, Chroma::byQuality, TJSAMP_420},
                                 {90, Chroma::byQuality, TJSAMP_444}, {100, Chroma::byQuality, TJSAMP_444},
                                 {100, Chroma::halved, TJSAMP_420},   {30, Chroma::full, TJSAMP_444},
                                 {-5, Chroma::byQuality, TJSAMP_420}, {1000, Chroma::byQuality, TJSAMP_444}};
    const Slopes slopes(40, 30);
    for (const auto& [quality, chroma, subsampling] : cases) {
        EXPECT_EQ(decodeJpeg(encodeJpeg(slopes.picture, quality, chroma)).subsampling, subsampling) << quality;
    }
}

TEST(JpegWriter, HigherQualityIsLargerAndNearer) {
    const Slopes slopes(300, 200);
    std::size_t lastSize = 0;
    double lastError = 255;
    for (const int quality : {1, 10, 40, 75, 95, 100}) {
        const auto file = encodeJpeg(slopes.picture, quality, Chroma::full);
        const double error = meanError(slopes.picture, decodeJpeg(file));
        EXPECT_GT(file.size(), lastSize) << quality;
        EXPECT_LT(error, lastError) << quality;
        lastSize = file.size();
        lastError = error;
    }
    EXPECT_LT(lastError, 0.6);
    EXPECT_EQ(encodeJpeg(slopes.picture, 200), encodeJpeg(slopes.picture, 100));
    EXPECT_EQ(encodeJpeg(slopes.picture, 0), encodeJpeg(slopes.picture, 1));
}

TEST(JpegWriter, SidesThatNoJpegHasAreRefused) {
    const Bytes pixels(65'501 * 4);
    EXPECT_THROW(static_cast<void>(encodeJpeg({pixels.data(), 4, 0, 1}, 80)), JpegError);
    EXPECT_THROW(static_cast<void>(encodeJpeg({pixels.data(), 4, 1, 0}, 80)), JpegError);
    EXPECT_THROW(static_cast<void>(encodeJpeg({pixels.data(), 4, 1, 65'501}, 80)), JpegError);
    EXPECT_THROW(static_cast<void>(encodeJpeg({pixels.data(), 65'501 * 4, 65'501, 1}, 80)), JpegError);
    EXPECT_THROW(static_cast<void>(encodeJpeg({pixels.data(), std::size_t{1} << 33, 2, 2}, 80)), JpegError);
    EXPECT_EQ(decodeJpeg(encodeJpeg({pixels.data(), 65'500 * 4, 65'500, 1}, 80)).width, 65'500);
}

}  // namespace
}  // namespace sorvik::codecs::testing
