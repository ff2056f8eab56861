#pragma once

#include <filesystem>
#include <vips/vips8>

namespace sorvik::sips::test {

/// All pixels of a picture file by libvips alone: upright, first page.
vips::VImage read(const std::filesystem::path& file);

/// The same pixels, taken for sRGB.
vips::VImage withoutProfile(const vips::VImage& image);

/// Likeness in dB after both were brought through their profiles to 8-bit sRGB on white, 100 when equal.
/// Negative when their sizes differ.
double likeness(const vips::VImage& one, const vips::VImage& other);

}  // namespace sorvik::sips::test
