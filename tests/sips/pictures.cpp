#include "pictures.h"

#include <gtest/gtest.h>

#include <cmath>

namespace sorvik::sips::test {

using vips::VImage;

namespace {

VImage comparable(const VImage& image) {
    const VImage managed = image.get_typeof(VIPS_META_ICC_NAME) != 0
                               ? image.icc_transform("srgb", VImage::option()->set("embedded", true))
                               : image;
    const VImage colours = managed.colourspace(VIPS_INTERPRETATION_sRGB).cast(VIPS_FORMAT_UCHAR);
    return colours.has_alpha() ? colours.flatten(VImage::option()->set("background", std::vector<double>{255}))
                               : colours;
}

/// Any test may be the first of its process to need libvips.
class StartedLibvips : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_EQ(vips_init("sips_tests"), 0);
        vips_cache_set_max(0);
    }
};

[[maybe_unused]] const auto* const startedLibvips = testing::AddGlobalTestEnvironment(new StartedLibvips);

}  // namespace

VImage read(const std::filesystem::path& file) {
    const VImage loaded = VImage::new_from_file(file.c_str());
    VImage pixels = loaded.autorot().copy_memory();
    if (loaded.get_typeof(VIPS_META_ICC_NAME) != 0) {
        // The profile of a HEIC dies with the image that the loader made (libvips 8.14).
        std::size_t size = 0;
        const void* profile = loaded.get_blob(VIPS_META_ICC_NAME, &size);
        vips_image_set_blob_copy(pixels.get_image(), VIPS_META_ICC_NAME, profile, size);
    }
    return pixels;
}

VImage withoutProfile(const VImage& image) {
    VImage copy = image.copy();
    copy.remove(VIPS_META_ICC_NAME);
    return copy;
}

double likeness(const VImage& one, const VImage& other) {
    if (one.width() != other.width() || one.height() != other.height()) {
        return -1;
    }
    const VImage difference = comparable(one) - comparable(other);
    const double error = (difference * difference).avg();
    return error == 0 ? 100 : 10 * std::log10(255.0 * 255.0 / error);
}

}  // namespace sorvik::sips::test
