#include "bundle/magick/camera_report.h"

#include <gtest/gtest.h>

namespace sorvik::bundle {
namespace {

using namespace std::string_literals;

TEST(CameraTiffOffset, IsKnownByTheFirstBytes) {
    EXPECT_EQ(cameraTiffOffset("MM\0*\0\0\0\x08"s), 0U);
    EXPECT_EQ(cameraTiffOffset("IIRO\x08"s), 0U);
    const std::string fuji = "FUJIFILMCCD-RAW " + std::string(68, '0') + "\0\0\0\x94"s;
    EXPECT_EQ(cameraTiffOffset(fuji), 160U);
    EXPECT_EQ(cameraTiffOffset(fuji.substr(0, 87)), std::nullopt);
    EXPECT_EQ(cameraTiffOffset("\0\0\0\x18"
                               "ftypcrx "s),
              std::nullopt);
    EXPECT_EQ(cameraTiffOffset(""), std::nullopt);
}

TEST(ExifCarrier, HoldsTheStructureInOneSegment) {
    const std::string jpeg = exifCarrier("IIRO\x08\0\0\0"s);
    EXPECT_TRUE(
        jpeg.starts_with("\xFF\xD8\xFF\xE1\0\x10"
                         "Exif\0\0II*\0\x08\0\0\0\xFF\xDB"s));
    EXPECT_EQ(exifCarrier("MM\0*"s + std::string(99999, 'x')).substr(4, 2), "\xFF\xFF");
    EXPECT_EQ(exifCarrier("\xFF\xD8"), "");
}

TEST(CameraProperties, LeavesOutWhatSaysNothing) {
    EXPECT_EQ(cameraProperties("Image:\n  Geometry: 1x1+0+0\n  Profiles:\n    Profile-exif: 65533 bytes\n"
                               "  Properties:\n    dng:make: \n    dng:create.date: 1970:01:01 00:00:00\n"
                               "    exif:ExposureBiasValue: 0/6\n    exif:ExposureTime: 10/2500\n"
                               "    exif:FNumber: 76/10\n    exif:FocalLength: 0/0\n    exif:ISOSpeedRatings: 0\n"
                               "    exif:MakerNote: 1, 2\n    exif:Model: D1 \n    icc:description: sRGB\n"
                               "  Artifacts:\n    verbose: true\n"),
              "Image:\n  Properties:\n    exif:ExposureBiasValue: 0/6\n    exif:ExposureTime: 1/250\n"
              "    exif:FNumber: 7.6\n    exif:Model: D1\n");
    EXPECT_EQ(cameraProperties("  Properties:\n    exif:ExposureTime: 2.5\n    exif:PhotographicSensitivity: 80\n"),
              "Image:\n  Properties:\n    exif:ExposureTime: 2.5\n    exif:ISOSpeedRatings: 80\n");
    EXPECT_EQ(cameraProperties("Image:\n  Properties:\n    exif:FNumber: 0/10\n"), "");
    EXPECT_EQ(cameraProperties("  Properties:\n    exif:ExposureTime: 1\n    exif:FNumber: 1\n    tiff:make: A\n"),
              "Image:\n  Properties:\n    tiff:make: A\n");
    EXPECT_EQ(cameraProperties(""), "");
}

}  // namespace
}  // namespace sorvik::bundle
