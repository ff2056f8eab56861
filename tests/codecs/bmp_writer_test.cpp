#include "codecs/bmp_writer.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "test_pictures.h"

namespace sorvik::codecs::testing {
namespace {

void writeBmp(const TemporaryFile& file, const TestPicture& picture, const PictureMetadata& metadata = {}) {
    writePicture(*makeBmpWriter(file.descriptor(), picture.layout, metadata), picture);
}

// What ImageMagick decodes, in the channels given ("gray", "rgb", "rgba").
Bytes decodedAs(const TemporaryFile& file, const std::string& channels) {
    return outputOf("/usr/bin/convert bmp:" + file.path() + " -depth 8 " + channels + ":-");
}

TEST(BmpWriter, IsReadByImageMagickAsItWas) {
    // The largest is gathered in several bands.
    for (const auto& [width, height] : {std::pair{1U, 1U}, {7U, 5U}, {701U, 900U}}) {
        SCOPED_TRACE(::testing::Message() << width << " x " << height);
        for (const auto& [channels, name] : {std::pair{1, "gray"}, {3, "rgb"}, {4, "rgba"}}) {
            const auto picture = makePicture(width, height, channels, 8);
            const TemporaryFile file;
            writeBmp(file, picture);
            EXPECT_TRUE(decodedAs(file, name) == picture.pixels) << name;
        }
    }
}

TEST(BmpWriter, GreyWithAlphaBecomesColour) {
    const TestPicture picture{{2, 1, 2, 8}, bytesOf("aAbB")};
    const TemporaryFile file;
    writeBmp(file, picture);
    EXPECT_EQ(decodedAs(file, "rgba"), bytesOf("aaaAbbbB"));
}

TEST(BmpWriter, CarriesProfileAndResolution) {
    const auto picture = makePicture(33, 21, 3, 8);
    const auto metadata = makeMetadata("RGB ");
    const TemporaryFile file;
    writeBmp(file, picture, metadata);
    EXPECT_TRUE(decodedAs(file, "rgb") == picture.pixels);
    EXPECT_EQ(outputOf("/usr/bin/identify -format '%[fx:resolution.x] %[fx:resolution.y] %U' bmp:" + file.path()),
              bytesOf("118.11 28.35 PixelsPerCentimeter"));

    const auto bytes = outputOf("cat " + file.path());
    ASSERT_EQ(bytes.size(), 14 + 124 + 100 * 21 + metadata.icc.size());
    EXPECT_TRUE(std::equal(metadata.icc.begin(), metadata.icc.end(),
                           bytes.end() - static_cast<std::ptrdiff_t>(metadata.icc.size())));
}

TEST(BmpWriter, RefusesWhatTheFormatCanNotHold) {
    const TemporaryFile file;
    EXPECT_THROW(static_cast<void>(makeBmpWriter(file.descriptor(), {4, 4, 3, 16}, {})), std::invalid_argument);
    try {
        static_cast<void>(makeBmpWriter(file.descriptor(), {40'000, 40'000, 3, 8}, {}));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const SinkError& error) {
        EXPECT_EQ(error.errorNumber(), EFBIG);
    }
    EXPECT_EQ(std::filesystem::file_size(file.path()), 0U);
}

TEST(BmpWriter, SaysThatTheDiskIsFull) {
    const auto picture = makePicture(100, 100, 3, 8);
    const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_THROW(writePicture(*makeBmpWriter(full, picture.layout, {}), picture), SinkError);
    ::close(full);
}

}  // namespace
}  // namespace sorvik::codecs::testing
