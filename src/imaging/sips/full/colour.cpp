#include "imaging/sips/full/colour.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>

namespace sorvik::sips {

namespace {

using vips::VImage;

enum class Family { grey, rgb, cmyk, other };

Family familyOf(const VImage& image) {
    switch (image.interpretation()) {
        case VIPS_INTERPRETATION_B_W:
        case VIPS_INTERPRETATION_GREY16:
            return Family::grey;
        case VIPS_INTERPRETATION_sRGB:
        case VIPS_INTERPRETATION_RGB:
        case VIPS_INTERPRETATION_RGB16:
            return image.bands() < 3 ? Family::grey : Family::rgb;
        case VIPS_INTERPRETATION_CMYK:
            return image.bands() < 4 ? Family::rgb : Family::cmyk;
        case VIPS_INTERPRETATION_MULTIBAND:
        case VIPS_INTERPRETATION_HISTOGRAM:
        case VIPS_INTERPRETATION_MATRIX:
            return image.bands() < 3 ? Family::grey : Family::rgb;
        default:
            return Family::other;
    }
}

int colourBands(Family family) {
    switch (family) {
        case Family::grey:
            return 1;
        case Family::cmyk:
            return 4;
        default:
            return 3;
    }
}

VImage withoutProfile(const VImage& image) {
    VImage copy = image.copy();
    copy.remove(VIPS_META_ICC_NAME);
    return copy;
}

cmsColorSpaceSignature signatureOf(Family family) {
    switch (family) {
        case Family::grey:
            return cmsSigGrayData;
        case Family::cmyk:
            return cmsSigCmykData;
        default:
            return cmsSigRgbData;
    }
}

bool hasSoundProfile(const VImage& image, Family family) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (image.get_typeof(VIPS_META_ICC_NAME) == 0 ||
        vips_image_get_blob(image.get_image(), VIPS_META_ICC_NAME, &data, &size) != 0) {
        return false;
    }
    const std::unique_ptr<void, decltype(&cmsCloseProfile)> profile(
        cmsOpenProfileFromMem(data, static_cast<cmsUInt32Number>(size)), &cmsCloseProfile);
    return profile != nullptr && cmsGetColorSpace(profile.get()) == signatureOf(family);
}

/// 32-bit and floating-point samples to 16 bits: whole numbers by their upper half, fractions with 1
/// as white, or the brightest value where that is more.
VImage toSixteenBits(const VImage& image) {
    VImage wide = image;
    switch (image.format()) {
        case VIPS_FORMAT_UINT:
            wide = image.cast(VIPS_FORMAT_USHORT, VImage::option()->set("shift", true));
            break;
        case VIPS_FORMAT_FLOAT:
        case VIPS_FORMAT_DOUBLE: {
            wide = image.copy_memory();
            const double brightest = wide.max();
            wide =
                (wide * (65535 / (brightest > 1 && std::isfinite(brightest) ? brightest : 1))).cast(VIPS_FORMAT_USHORT);
            break;
        }
        default:
            wide = image.cast(VIPS_FORMAT_USHORT);
            break;
    }
    return wide.copy(VImage::option()->set(
        "interpretation", familyOf(image) == Family::grey ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_RGB16));
}

/// Signed bytes and whole numbers become the unsigned ones of the same width, negative ones 0.
VImage toWholeSamples(const VImage& image) {
    switch (image.format()) {
        case VIPS_FORMAT_UCHAR:
        case VIPS_FORMAT_USHORT:
            return image;
        case VIPS_FORMAT_CHAR:
            return image.cast(VIPS_FORMAT_UCHAR);
        case VIPS_FORMAT_SHORT:
            return image.cast(VIPS_FORMAT_USHORT);
        case VIPS_FORMAT_INT:
            return toSixteenBits(image.cast(VIPS_FORMAT_UINT));
        default:
            return toSixteenBits(image);
    }
}

/// Through the embedded profile; a CMYK picture without one through libvips' own.
VImage toSrgb(const VImage& image, Family family) {
    auto* options = VImage::option()
                        ->set("embedded", true)
                        ->set("black_point_compensation", true)
                        ->set("depth", image.format() == VIPS_FORMAT_USHORT ? 16 : 8);
    if (family == Family::cmyk) {
        options->set("input_profile", "cmyk");
    }
    VImage converted = withoutProfile(image.icc_transform("srgb", options));
    if (family != Family::grey) {
        return converted;
    }
    // What was grey stays one channel: the three are alike.
    const VImage grey = converted.extract_band(1);
    const auto interpretation =
        converted.format() == VIPS_FORMAT_USHORT ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
    const VImage all = converted.bands() == 4 ? grey.bandjoin(converted.extract_band(3)) : grey;
    return all.copy(VImage::option()->set("interpretation", interpretation));
}

VImage toEightBits(const VImage& image) {
    if (image.format() != VIPS_FORMAT_USHORT) {
        return image;
    }
    return image.cast(VIPS_FORMAT_UCHAR, VImage::option()->set("shift", true))
        .copy(VImage::option()->set("interpretation",
                                    image.bands() < 3 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB));
}

VImage onWhite(const VImage& image) {
    const bool alpha = image.bands() == 2 || image.bands() == 4;
    const double white = image.format() == VIPS_FORMAT_USHORT ? 65535 : 255;
    return alpha ? image.flatten(VImage::option()->set("background", std::vector<double>{white})) : image;
}

/// At most one channel beyond the colours, which is taken for alpha.
VImage withoutSpareBands(const VImage& image, int colours) {
    const int kept = std::min(image.bands(), colours + 1);
    return kept == image.bands() ? image : image.extract_band(0, VImage::option()->set("n", kept));
}

}  // namespace

VImage fitColours(VImage image, const ColourTarget& target) {
    Family family = familyOf(image);
    if (family == Family::other) {
        const bool shallow = image.format() == VIPS_FORMAT_UCHAR;
        image = withoutProfile(image.colourspace(shallow ? VIPS_INTERPRETATION_sRGB : VIPS_INTERPRETATION_RGB16));
        family = Family::rgb;
    }
    image = withoutSpareBands(toWholeSamples(image), colourBands(family));
    if (!hasSoundProfile(image, family)) {
        image = withoutProfile(image);
    }
    const bool described = image.get_typeof(VIPS_META_ICC_NAME) != 0;
    const bool profileStays = target.profile && (target.grey || family != Family::grey);
    if (family == Family::cmyk || (described && !profileStays)) {
        image = toSrgb(image, family);
    }
    if (!target.deep) {
        image = toEightBits(image);
    }
    return target.alpha ? image : onWhite(image);
}

}  // namespace sorvik::sips
