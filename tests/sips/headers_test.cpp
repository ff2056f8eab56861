// What is looked up in files before any decoder sees them.

#include <gtest/gtest.h>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/completeness.h"
#include "imaging/sips/content_kind.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/photoshop_block.h"
#include "imaging/sips/svg_units.h"
#include "imaging/sips/upright.h"
#include "tool.h"

namespace sorvik::sips {
namespace {

using namespace std::string_view_literals;

std::span<const std::byte> bytesOf(std::string_view text) { return std::as_bytes(std::span(text)); }

std::vector<std::byte> vectorOf(std::string_view text) {
    const auto bytes = bytesOf(text);
    return {bytes.begin(), bytes.end()};
}

TEST(ContentKind, IsToldByContentAlone) {
    const std::vector<std::pair<const char*, ContentKind>> rows{
        {"jpeg/iptc.jpg", ContentKind::jpeg},
        {"png/indexed.png", ContentKind::png},
        {"gif/cogs.gif", ContentKind::gif},
        {"webp/1.webp", ContentKind::webp},
        {"tiff/hopper_bigtiff.tif", ContentKind::tiff},
        {"bmp/pal1.bmp", ContentKind::bmp},
        {"psd/rgba.psd", ContentKind::psd},
        {"ico/favicon.ico", ContentKind::ico},
        {"heic/rgb.heif", ContentKind::heif},
        {"avif/hopper.avif", ContentKind::heif},
        {"svg/logo.svg", ContentKind::svg},
        {"svg/logo.svgz", ContentKind::svgz},
        {"pdf/optipng.man.pdf", ContentKind::pdf},
    };
    for (const auto& [name, kind] : rows) {
        EXPECT_EQ(contentKindOf(bytesOf(test::contentsOf(test::sample(name)))), kind) << name;
    }
    EXPECT_EQ(contentKindOf(bytesOf("\xEF\xBB\xBF <!-- a --> <svg/>")), ContentKind::svg);
    EXPECT_EQ(contentKindOf(bytesOf("\xFF\xFE<\0s\0v\0g\0/\0>\0"sv)), ContentKind::svg);
    for (const std::string_view other : {""sv, "B"sv, "II*\0"sv, "push graphic-context"sv, "P6 1 1 255"sv,
                                         "%!PS-Adobe-3.0"sv, "<html>"sv, "\x1F\x8B\x08\0\0\0"sv}) {
        EXPECT_NE(contentKindOf(bytesOf(other)), ContentKind::svg) << other;
    }
    EXPECT_EQ(contentKindOf(bytesOf("%!PS-Adobe-3.0")), ContentKind::unknown);
}

TEST(ContentKind, CameraFilesAreNoTiffs) {
    // A directory with a DNG version, one with sensor data, one that is the preview of sub-directories.
    const auto tiff = [](std::string_view entries, char count) {
        return std::string("II*\0\x08\0\0\0"sv) + count + '\0' + std::string(entries) + std::string(4, '\0');
    };
    const std::string dng = tiff("\x12\xC6\x01\0\x04\0\0\0\x01\x04\0\0"sv, 1);
    const std::string sensor = tiff("\x06\x01\x03\0\x01\0\0\0\x23\x80\0\0"sv, 1);
    const std::string preview = tiff("\xFE\0\x04\0\x01\0\0\0\x01\0\0\0\x4A\x01\x04\0\x01\0\0\0\x40\0\0\0"sv, 2);
    const std::string plain = tiff("\xFE\0\x04\0\x01\0\0\0\0\0\0\0"sv, 1);
    for (const std::string& file : {dng, sensor, preview}) {
        EXPECT_EQ(contentKindOf(bytesOf(file)), ContentKind::cameraRaw);
    }
    EXPECT_EQ(contentKindOf(bytesOf(plain)), ContentKind::tiff);
}

TEST(Limits, HeadersAreBelievedBeforeDecoders) {
    const std::string_view frameBeyondScreen = "GIF89a\1\0\1\0\0\0\0!\xF9\1x\0,\x10\0\0\0\0\xF0\0\xF0\0"sv;
    const auto size = claimedSize(ContentKind::gif, bytesOf(frameBeyondScreen));
    ASSERT_TRUE(size);
    EXPECT_EQ(size->width, 0xF010U);
    EXPECT_EQ(size->height, 0xF000U);

    std::string topDown(30, '\0');
    topDown[14] = 40;
    topDown.replace(18, 8, "\x10\0\0\0\xF0\xFF\xFF\xFF"sv);
    EXPECT_EQ(claimedSize(ContentKind::bmp, bytesOf(topDown))->height, 16U);

    EXPECT_NO_THROW(requireDecodable({16384, 16384, 4}, Decoding::whole));
    EXPECT_NO_THROW(requireDecodable({16385, 16384, 4}, Decoding::streamed));
    EXPECT_THROW(requireDecodable({16385, 16384, 4}, Decoding::whole), Failure);
    EXPECT_THROW(requireDecodable({65536, 1, 4}, Decoding::streamed), Failure);
    EXPECT_THROW(requireDecodable({0xFFFFFFFF, 0xFFFFFFFF, 8}, Decoding::whole), Failure);
}

// Every cut of a file is told apart from the whole one, and none makes the look-up read too far.
TEST(SvgUnits, AreThoseOfTheRootAlone) {
    const auto absolute = [](std::string_view svg) { return hasAbsoluteUnits(bytesOf(svg)); };
    EXPECT_TRUE(absolute("<?xml version='1.0'?><!-- <svg width='1px'> --><svg\n height = '297mm' width='210mm'>"));
    EXPECT_TRUE(absolute("<svg:svg width=\"2.5in\">"));
    EXPECT_FALSE(absolute("<svg width=\"401.98px\" height='12'><rect width='3mm'/>"));
    EXPECT_FALSE(absolute("<svg viewBox='0 0 8 8'>"));
    EXPECT_FALSE(absolute("<svg width='10mm"));
    EXPECT_FALSE(absolute("\x1F\x8B junk"));
}

TEST(Completeness, CutsAreSeen) {
    const std::vector<std::pair<const char*, ContentKind>> rows{{"png/tbgn2c16.png", ContentKind::png},
                                                                {"psd/rgba.psd", ContentKind::psd}};
    for (const auto& [name, kind] : rows) {
        const std::string file = test::contentsOf(test::sample(name));
        EXPECT_FALSE(isCutOff(kind, bytesOf(file))) << name;
        for (std::size_t size = 8; size < file.size(); ++size) {
            const std::string cut = file.substr(0, size);
            ASSERT_TRUE(isCutOff(kind, bytesOf(cut))) << name << " at " << size;
        }
    }
}

constexpr std::string_view lyingExif =
    "MM\0*\0\0\0\x08"
    "\0\2"
    "\x01\x12\0\3\0\0\0\1\0\6\0\0"    // Orientation 6
    "\x87\x69\0\4\0\0\0\1\0\0\0\x2A"  // EXIF directory
    "\0\0\0\x99"                      // a thumbnail follows
    "\0\0\0\0"
    "\0\2"
    "\xA0\x02\0\4\0\0\0\1\0\0\x0F\xA0"  // 4000 x 3000
    "\xA0\x03\0\4\0\0\0\1\0\0\x0B\xB8"
    "\0\0\0\0"sv;

TEST(Upright, MetadataFollowThePixels) {
    codecs::PictureMetadata metadata;
    metadata.exif = vectorOf(lyingExif);
    metadata.xmp = vectorOf("<rdf:Description tiff:Orientation=\"6\"/>");
    EXPECT_EQ(orientationOf(metadata.exif), 6);
    declareUpright(metadata, 6);
    EXPECT_EQ(orientationOf(metadata.exif), 1);
    EXPECT_EQ(textOf(metadata.xmp), "<rdf:Description tiff:Orientation=\"1\"/>");
    EXPECT_EQ(textOf(metadata.exif).substr(34, 4), "\0\0\0\0"sv) << "the thumbnail is let go";
    EXPECT_EQ(textOf(metadata.exif).substr(52, 4), "\0\0\x0B\xB8"sv) << "the width is what was the height";
}

TEST(Upright, DamagedExifIsLeftAlone) {
    for (std::size_t size = 0; size < lyingExif.size(); ++size) {
        codecs::PictureMetadata metadata;
        metadata.exif = vectorOf(lyingExif.substr(0, size));
        declareUpright(metadata, orientationOf(metadata.exif));
        EXPECT_EQ(metadata.exif.size(), size);
    }
}

TEST(PhotoshopBlock, RecordsComeBackFromTheirResource) {
    const auto iptc = vectorOf("\x1C\2\x78\0\5Hallo"sv);
    EXPECT_EQ(iptcOfPhotoshopBlock(photoshopBlockOf(iptc)), iptc);
    EXPECT_TRUE(iptcOfPhotoshopBlock(bytesOf("Photoshop 3.0\0"
                                             "8BIM\4\4\0\0\xFF\xFF\xFF\xFFxx"sv))
                    .empty());
}

}  // namespace
}  // namespace sorvik::sips
