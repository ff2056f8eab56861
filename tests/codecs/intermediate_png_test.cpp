#include "codecs/intermediate_png.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include "codecs/png_writer.h"
#include "test_pictures.h"

namespace sorvik::codecs::testing {
namespace {

Bytes encodePng(const TestPicture& picture, PngPurpose purpose, const PictureMetadata& metadata) {
    return encode(picture, [&](ByteSink& sink) { return makePngWriter(sink, picture.layout, metadata, {purpose, 6}); });
}

std::unique_ptr<IntermediatePng> openBytes(const Bytes& bytes) {
    const TemporaryFile file(bytes);
    return IntermediatePng::open(file.descriptor());
}

Bytes readPixels(const IntermediatePng& png) {
    const std::size_t rowBytes = png.layout().rowBytes();
    Bytes pixels(rowBytes * png.layout().height);
    for (std::uint32_t y = 0; y < png.layout().height; ++y) {
        png.readRow(y, pixels.data() + y * rowBytes);
    }
    return pixels;
}

TEST(IntermediatePng, GivesBackRowsAndMetadata) {
    for (int channels = 1; channels <= 4; ++channels) {
        for (const int bits : {8, 16}) {
            for (const auto& [width, height] : {std::pair{1U, 1U}, {301U, 299U}, {22001U, 3U}}) {
                const auto picture = makePicture(width, height, channels, bits);
                const auto metadata = makeMetadata(channels <= 2 ? "GRAY" : "RGB ");
                const auto png = openBytes(encodePng(picture, PngPurpose::intermediate, metadata));
                ASSERT_TRUE(png);
                EXPECT_EQ(png->layout(), picture.layout);
                EXPECT_TRUE(readPixels(*png) == picture.pixels);
                EXPECT_TRUE(png->metadata() == metadata);
            }
        }
    }
}

TEST(IntermediatePng, LeavesFilesOfOthersAlone) {
    const auto picture = makePicture(20, 20, 3, 8);
    EXPECT_FALSE(openBytes(encodePng(picture, PngPurpose::kept, {})));
    EXPECT_FALSE(openBytes({}));
    EXPECT_FALSE(openBytes(bytesOf("GIF89a")));
    EXPECT_FALSE(IntermediatePng::open(-1));
}

TEST(IntermediatePng, IsAbsentWhereverTheFileIsCutOrAByteIsWrong) {
    auto metadata = makeMetadata("RGB ");
    metadata.icc.resize(200);
    const auto whole = encodePng(makePicture(11, 5, 3, 16), PngPurpose::intermediate, metadata);
    ASSERT_TRUE(openBytes(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(openBytes({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)})) << size;
    }
    for (std::size_t offset = 0; offset < whole.size(); ++offset) {
        for (const unsigned flip : {0x01U, 0x80U, 0xffU}) {
            auto damaged = whole;
            damaged[offset] ^= std::byte(flip);
            EXPECT_FALSE(openBytes(damaged)) << offset;
        }
    }
}

}  // namespace
}  // namespace sorvik::codecs::testing
