#include "imaging/sips/full/decode.h"

#include "imaging/sips/content_kind.h"
#include "imaging/sips/full/vips_loader.h"
#include "imaging/sips/full/vips_metadata.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/upright.h"

namespace sorvik::sips {

namespace {

using vips::VImage;

constexpr int mirrored = 2;  // the one turn that needs no row before its time

void requireImageDecodable(const VImage& image, Decoding decoding) {
    const auto sampleBytes = vips_format_sizeof(image.format());
    requireDecodable({static_cast<std::uint64_t>(image.width()), static_cast<std::uint64_t>(image.height()),
                      static_cast<std::uint64_t>(image.bands()) * sampleBytes},
                     decoding);
}

VImage turnUpright(const VImage& image, int orientation) {
    if (orientation <= 1) {
        return image;
    }
    return (orientation > mirrored ? image.copy_memory() : image).autorot();
}

}  // namespace

DecodedPicture decodePicture(const InputFile& input, ColourTarget target) {
    const ContentKind kind = contentKindOf(input.bytes());
    const LoadedPicture loaded = loadPicture(kind, input);
    // HEIC and AVIF are turned by their container, and an intermediate is upright.
    const bool turned = kind == ContentKind::heif || loaded.metadata;
    const int orientation = turned ? 1 : vips_image_get_orientation(loaded.image.get_image());
    requireImageDecodable(loaded.image,
                          loadsWhole(kind) || orientation > mirrored ? Decoding::whole : Decoding::streamed);

    // The images made below keep `loaded` alive only as long as they are computed from it, and the
    // profile of a HEIC dies with the loader's image: all that reads metadata stands in this function.
    DecodedPicture picture;
    picture.metadata = loaded.metadata ? *loaded.metadata : metadataOf(loaded.image, kind, input.bytes());
    target.alpha = target.alpha && kind != ContentKind::pdf;  // a page lies on white paper
    picture.image = fitColours(turnUpright(loaded.image, orientation), target);
    picture.metadata.icc = profileOf(picture.image);
    declareUpright(picture.metadata, orientation);
    return picture;
}

}  // namespace sorvik::sips
