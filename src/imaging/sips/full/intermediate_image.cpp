#include "imaging/sips/full/intermediate_image.h"

#include <algorithm>

#include "imaging/sips/full/region_pixels.h"
#include "imaging/sips/full/vips_library.h"

namespace sorvik::sips {

namespace {

using vips::VImage;
using Shared = std::shared_ptr<codecs::IntermediatePng>;

int copyRows(VipsRegion* region, void* /*sequence*/, void* data, void* /*unused*/, gboolean* /*stop*/) {
    const codecs::IntermediatePng& source = **static_cast<Shared*>(data);
    const std::size_t pixel = source.layout().bytesPerPixel();
    const VipsRect& wanted = region->valid;
    std::vector<std::byte> row(source.layout().rowBytes());
    for (int y = wanted.top; y < VIPS_RECT_BOTTOM(&wanted); ++y) {
        source.readRow(static_cast<std::uint32_t>(y), row.data());
        std::copy_n(row.data() + static_cast<std::size_t>(wanted.left) * pixel,
                    static_cast<std::size_t>(wanted.width) * pixel, pixelAt(region, wanted.left, y));
    }
    return 0;
}

}  // namespace

VImage imageOf(std::shared_ptr<codecs::IntermediatePng> png) {
    const codecs::PixelLayout& layout = png->layout();
    const bool deep = layout.bitsPerSample == 16;
    const bool grey = layout.channels <= 2;
    VImage image(vips_image_new());
    const double perMillimetre = png->metadata().dotsPerInchX > 0 ? png->metadata().dotsPerInchX / 25.4 : 1;
    vips_image_init_fields(image.get_image(), static_cast<int>(layout.width), static_cast<int>(layout.height),
                           layout.channels, deep ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR, VIPS_CODING_NONE,
                           deep ? (grey ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_RGB16)
                                : (grey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB),
                           perMillimetre, perMillimetre);
    if (vips_image_pipelinev(image.get_image(), VIPS_DEMAND_STYLE_THINSTRIP, nullptr) != 0) {
        throwVipsFailure();
    }
    auto* kept = new Shared(std::move(png));
    g_object_set_data_full(G_OBJECT(image.get_image()), "sips-intermediate", kept,
                           [](gpointer data) { delete static_cast<Shared*>(data); });
    if (vips_image_generate(image.get_image(), nullptr, copyRows, nullptr, kept, nullptr) != 0) {
        throwVipsFailure();
    }
    if (const auto& icc = (*kept)->metadata().icc; !icc.empty()) {
        vips_image_set_blob_copy(image.get_image(), VIPS_META_ICC_NAME, icc.data(), icc.size());
    }
    return image;
}

}  // namespace sorvik::sips
