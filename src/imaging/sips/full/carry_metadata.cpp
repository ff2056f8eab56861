#include "imaging/sips/full/carry_metadata.h"

#include <string>

#include "codecs/byte_sink.h"
#include "codecs/intermediate_png.h"
#include "codecs/samples.h"
#include "imaging/sips/byte_reader.h"
#include "imaging/sips/content_kind.h"
#include "imaging/sips/files.h"
#include "imaging/sips/fitting_writer.h"
#include "imaging/sips/full/avif_metadata.h"
#include "imaging/sips/full/heif_handles.h"
#include "imaging/sips/full/heif_writer.h"
#include "imaging/sips/full/webp_metadata.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/opacity_watch.h"
#include "imaging/sips/upright.h"

namespace sorvik::sips {

namespace {

template <typename Visit>
void forEachRow(const codecs::IntermediatePng& png, Visit&& visit) {
    std::vector<std::byte> row(png.layout().rowBytes());
    for (std::uint32_t y = 0; y < png.layout().height; ++y) {
        png.readRow(y, row.data());
        if (!visit(row)) {
            return;
        }
    }
}

bool isTransparent(const codecs::IntermediatePng& png) {
    bool transparent = false;
    if (png.layout().hasAlpha()) {
        forEachRow(png, [&](const std::vector<std::byte>& row) {
            transparent = rowIsTransparent(row.data(), png.layout());
            return !transparent;
        });
    }
    return transparent;
}

bool holdsAlpha(std::span<const std::byte> avif) {
    const HeifContext context(heif_context_alloc());
    heif_image_handle* handle = nullptr;
    heif_error error = heif_context_read_from_memory_without_copy(context.get(), avif.data(), avif.size(), nullptr);
    if (error.code == heif_error_Ok) {
        error = heif_context_get_primary_image_handle(context.get(), &handle);
    }
    const HeifHandle owned(handle);
    // Too little memory for a header means that the header lies.
    if (error.code != heif_error_Ok) {
        throw Failure(Status::failed, "damaged picture");
    }
    return heif_image_handle_has_alpha_channel(handle) != 0;
}

/// What can stand beside the pixels of any encoder: they write RGB, and the pixels are upright.
codecs::PictureMetadata carriedFrom(const codecs::IntermediatePng& png) {
    codecs::PictureMetadata metadata = png.metadata();
    const codecs::PixelLayout written{png.layout().width, png.layout().height, 3, 8};
    if (!codecs::profileFits(metadata.icc, written)) {
        metadata.icc.clear();
    }
    if (orientationOf(metadata.exif) != 1) {
        declareUpright(metadata, 1);
    }
    return metadata;
}

void encodeAvif(const CarryRequest& request, const codecs::IntermediatePng& png,
                const codecs::PictureMetadata& metadata) {
    const codecs::PixelLayout layout = fitted(png.layout(), true, false);
    requireDecodable({layout.width, layout.height, layout.bytesPerPixel()}, Decoding::whole);
    ReplacementFile replacement(request.to);
    codecs::FileSink sink(replacement.descriptor());
    const auto writer = makeHeifWriter(HeifCodec::av1, sink, layout, metadata, request.quality);
    FittingWriter fitting(*writer, png.layout(), layout);
    forEachRow(png, [&](const std::vector<std::byte>& row) {
        fitting.writeRows(row.data(), row.size(), 1);
        return true;
    });
    writer->finish();
    sink.flush();
    replacement.replace();
}

}  // namespace

Status carryMetadata(const CarryRequest& request) {
    const InputFile from(request.from);
    const auto png = codecs::IntermediatePng::open(from.descriptor());
    if (!png) {
        throw Failure(Status::failed, "the metadata can only be carried from an intermediate");
    }
    const codecs::PictureMetadata metadata = carriedFrom(*png);
    const InputFile to(request.to);
    if (contentKindOf(to.bytes()) == ContentKind::webp) {
        replaceWith(request.to, webpWithMetadata(to.bytes(), metadata));
    } else if (holdsAt(to.bytes(), 4, "ftypavif")) {
        const bool alphaStays = holdsAlpha(to.bytes()) || !isTransparent(*png);
        if (alphaStays) {
            replaceWith(request.to, avifWithMetadata(to.bytes(), metadata));
        } else {
            encodeAvif(request, *png, metadata);
        }
    } else {
        throw Failure(Status::failed, "metadata can't be put into this kind of file");
    }
    return Status::finished;
}

}  // namespace sorvik::sips
