#include "imaging/sips/full/icons.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vips/vips8>

#include "codecs/byte_sink.h"
#include "codecs/png_writer.h"
#include "imaging/sips/full/decode.h"

namespace sorvik::sips {

namespace {

using vips::VImage;

VImage pressed(const VImage& image, int width, int height) {
    return image.thumbnail_image(
        width, VImage::option()->set("height", height)->set("size", VIPS_SIZE_FORCE)->set("no_rotate", true));
}

/// 8-bit RGB and alpha.
VImage withAlpha(const VImage& image) {
    const VImage colours = image.bands() < 3 ? image.colourspace(VIPS_INTERPRETATION_sRGB) : image;
    return colours.bands() == 4 ? colours : colours.bandjoin_const({255});
}

/// The picture in memory, at a size from which all sides can be made without a visible loss.
VImage gathered(const VImage& image, int largestSide) {
    constexpr int reserve = 4;
    const int limit = largestSide * reserve;
    if (image.width() <= limit && image.height() <= limit) {
        return image.copy_memory();
    }
    return pressed(image, std::min(image.width(), limit), std::min(image.height(), limit)).copy_memory();
}

void writePng(const VImage& image, int descriptor) {
    const codecs::PixelLayout layout{static_cast<std::uint32_t>(image.width()),
                                     static_cast<std::uint32_t>(image.height()), image.bands(), 8};
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> pixels(image.write_to_memory(&size), &g_free);
    codecs::FileSink sink(descriptor);
    const auto writer = codecs::makePngWriter(sink, layout, {}, {});
    writer->writeRows(static_cast<const std::byte*>(pixels.get()), layout.rowBytes(), layout.height);
    writer->finish();
    sink.flush();
}

}  // namespace

void writeIcons(const ConvertRequest& request, const InputFile& input) {
    const DecodedPicture picture = decodePicture(input, {true, false, false});
    const VImage source = gathered(withAlpha(picture.image), std::ranges::max(request.iconSizes));
    std::vector<std::unique_ptr<OutputFile>> outputs;
    for (const int side : request.iconSizes) {
        outputs.push_back(std::make_unique<OutputFile>(request.output + "." + std::to_string(side), input.identity()));
        writePng(pressed(source, side, side), outputs.back()->descriptor());
    }
    for (const auto& output : outputs) {
        output->keep();
    }
}

}  // namespace sorvik::sips
