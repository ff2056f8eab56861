#include "imaging/sips/full/vips_writers.h"

#include <utility>
#include <vips/vips8>

#include "imaging/sips/full/collecting_writer.h"

namespace sorvik::sips {

namespace {

using vips::VImage;

VImage imageOf(const std::vector<std::byte>& pixels, const codecs::PixelLayout& layout) {
    return VImage::new_from_memory(const_cast<std::byte*>(pixels.data()), pixels.size(), static_cast<int>(layout.width),
                                   static_cast<int>(layout.height), layout.channels, VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation",
                                    layout.channels < 3 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB));
}

void handOver(codecs::ByteSink& sink, VipsBlob* blob) {
    const std::unique_ptr<VipsArea, void (*)(VipsArea*)> owned(VIPS_AREA(blob), vips_area_unref);
    sink.write({static_cast<const std::byte*>(owned->data), owned->length});
}

void attach(VImage& image, const char* field, const std::vector<std::byte>& content) {
    if (!content.empty()) {
        vips_image_set_blob_copy(image.get_image(), field, content.data(), content.size());
    }
}

class GifWriter final : public CollectingWriter {
public:
    GifWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout) : CollectingWriter(layout), sink_(sink) {}
    void finish() override { handOver(sink_, imageOf(pixels(), layout()).gifsave_buffer()); }

private:
    codecs::ByteSink& sink_;
};

class WebpWriter final : public CollectingWriter {
public:
    WebpWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout, codecs::PictureMetadata metadata, int quality)
        : CollectingWriter(layout), sink_(sink), metadata_(std::move(metadata)), quality_(quality) {}

    void finish() override {
        VImage image = imageOf(pixels(), layout());
        attach(image, VIPS_META_ICC_NAME, metadata_.icc);
        attach(image, VIPS_META_EXIF_NAME, metadata_.exif);
        attach(image, VIPS_META_XMP_NAME, metadata_.xmp);
        // libvips makes an EXIF block of its own where there is none.
        const bool bare = metadata_.icc.empty() && metadata_.exif.empty() && metadata_.xmp.empty();
        handOver(sink_, image.webpsave_buffer(VImage::option()->set("Q", quality_)->set("strip", bare)));
    }

private:
    codecs::ByteSink& sink_;
    codecs::PictureMetadata metadata_;
    int quality_;
};

}  // namespace

std::unique_ptr<codecs::RowWriter> makeGifWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout) {
    return std::make_unique<GifWriter>(sink, layout);
}

std::unique_ptr<codecs::RowWriter> makeWebpWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout,
                                                  const codecs::PictureMetadata& metadata, int quality) {
    return std::make_unique<WebpWriter>(sink, layout, metadata, quality);
}

}  // namespace sorvik::sips
