#include "imaging/sips/full/full_route.h"

#include <exception>
#include <vips/vips8>

#include "imaging/sips/direct_route.h"
#include "imaging/sips/files.h"
#include "imaging/sips/full/decode.h"
#include "imaging/sips/full/heif_writer.h"
#include "imaging/sips/full/icons.h"
#include "imaging/sips/full/region_pixels.h"
#include "imaging/sips/full/vips_library.h"
#include "imaging/sips/full/vips_writers.h"
#include "imaging/sips/opacity_watch.h"

namespace sorvik::sips {

namespace {

using vips::VImage;

constexpr int defaultWebpQuality = 85;

/// Hands the bands of an image to a writer, which may throw through the C of libvips only later.
struct Delivery {
    codecs::RowWriter& writer;
    std::exception_ptr fault;

    static int deliver(VipsRegion* region, VipsRect* area, void* data) {
        auto& self = *static_cast<Delivery*>(data);
        try {
            self.writer.writeRows(pixelAt(region, 0, area->top), strideOf(region),
                                  static_cast<std::uint32_t>(area->height));
            return 0;
        } catch (...) {
            self.fault = std::current_exception();
            return -1;
        }
    }
};

void pumpImage(const VImage& image, codecs::RowWriter& writer) {
    Delivery delivery{writer, nullptr};
    const int result = vips_sink_disc(image.get_image(), Delivery::deliver, &delivery);
    if (delivery.fault) {
        std::rethrow_exception(delivery.fault);
    }
    if (result != 0) {
        throwVipsFailure();
    }
}

codecs::PixelLayout layoutOf(const VImage& image) {
    return {static_cast<std::uint32_t>(image.width()), static_cast<std::uint32_t>(image.height()), image.bands(),
            image.format() == VIPS_FORMAT_USHORT ? 16 : 8};
}

PictureSource sourceOf(const ConvertRequest& request, const InputFile& input) {
    const FormatRow& target = rowOf(request.format);
    DecodedPicture picture =
        decodePicture(input, {target.alpha, target.deep, target.profile && !request.toSrgb, target.grey});
    PictureSource source{layoutOf(picture.image), std::move(picture.metadata), false, {}};
    if (request.stripMetadata) {
        strip(source.metadata);
    }
    source.pump = [image = picture.image](codecs::RowWriter& writer) { pumpImage(image, writer); };
    return source;
}

std::unique_ptr<codecs::RowWriter> makeWriter(const ConvertRequest& request, const PictureSource& source,
                                              codecs::ByteSink& sink, int descriptor) {
    switch (request.format) {
        case Format::gif:
            return makeGifWriter(sink, source.layout);
        case Format::webp:
            return makeWebpWriter(sink, source.layout, source.metadata, request.quality.value_or(defaultWebpQuality));
        case Format::heic:
            return makeHeifWriter(HeifCodec::hevc, sink, source.layout, source.metadata, request.quality);
        default:
            return makeDirectWriter(request, source, sink, descriptor);
    }
}

void writePicture(const ConvertRequest& request, const InputFile& input, PictureSource source) {
    OutputFile output(request.output, input.identity());
    codecs::FileSink sink(output.descriptor());
    const auto writer = makeWriter(request, source, sink, output.descriptor());
    OpacityWatch watched(*writer, source.layout);
    source.pump(request.intermediate ? static_cast<codecs::RowWriter&>(watched) : *writer);
    source.pump = nullptr;  // lets go of the decoder before an encoder that wants the memory
    writer->finish();
    sink.flush();
    if (request.intermediate) {
        announceContents(source.metadata, watched.sawTransparency());
    }
    output.keep();
}

}  // namespace

Status convertFully(const ConvertRequest& request) {
    startVips();
    try {
        const InputFile input(request.input);
        if (request.iconSizes.empty()) {
            writePicture(request, input, sourceOf(request, input));
        } else {
            writeIcons(request, input);
        }
        return Status::finished;
    } catch (const vips::VError&) {
        throwVipsFailure();
    }
}

}  // namespace sorvik::sips
