#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sorvik::bundle {

/// How much of a camera's file `exifCarrier` can use, in bytes: what a JPEG's segment holds.
constexpr std::uint64_t cameraHeadLength = 65527;

/// Where the TIFF structure with a camera's EXIF begins in its file, in bytes; absent for other files. The first 92
/// bytes are enough. Sources: TIFF 6.0, section 2, with the numbers that Olympus and Panasonic put in place of
/// 42; the header of Fujifilm's RAF, whose preview is a JPEG with EXIF, as LibRaw reads it.
[[nodiscard]] std::optional<std::uint64_t> cameraTiffOffset(std::string_view head);

/// A JPEG of one pixel that has the start of such a structure as its EXIF, so that ImageMagick reads a camera's
/// properties whatever became of the pixels behind. Source: Exif 2.3, section 4.5.
[[nodiscard]] std::string exifCarrier(std::string_view tiff);

/// The properties in what ImageMagick 6 reports, without those that say nothing (values that stand for "unknown",
/// the date that is zero) and those of thumbnails and profiles. Exposure time, f-number and focal length
/// are written as one does. Empty when there is none.
[[nodiscard]] std::string cameraProperties(std::string_view report);

}  // namespace sorvik::bundle
