#include <algorithm>
#include <cmath>

#include "codecs/byte_sink.h"
#include "codecs/jpeg_writer.h"
#include "codecs/premultiplied_png.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/pdf_output.h"
#include "sorvikdraw/engine/raster_output.h"
#include "sorvikdraw/engine/svg.h"

namespace sorvik::draw {
namespace {

const std::byte* bytesOf(const Raster& raster) { return reinterpret_cast<const std::byte*>(raster.row(0)); }

std::vector<std::byte> encodedPng(const Raster& raster) {
    codecs::BufferSink sink;
    codecs::writePremultipliedPng(sink, {bytesOf(raster), raster.stride(), static_cast<std::uint32_t>(raster.width()),
                                         static_cast<std::uint32_t>(raster.height())});
    return sink.bytes();
}

std::vector<std::byte> encodedJpeg(const Raster& raster, double compressionQuality) {
    const double quality = std::isnan(compressionQuality) ? 1 : std::clamp(compressionQuality, 0.0, 1.0);
    try {
        return codecs::encodeJpeg({bytesOf(raster), raster.stride(), static_cast<std::uint32_t>(raster.width()),
                                   static_cast<std::uint32_t>(raster.height())},
                                  static_cast<int>(std::lround(quality * 100)));
    } catch (const codecs::JpegError&) {
        throw DrawingError("Failed to retrieve jpeg data");
    }
}

}  // namespace

std::vector<std::byte> SVG::pngData(double scale, const Insets& insets) const {
    return encodedPng(insets == Insets{} ? rasterize(*this, scale) : rasterize(expanded(insets), scale));
}

std::vector<std::byte> SVG::pngData(Size size, double scale) const { return encodedPng(rasterize(*this, size, scale)); }

std::vector<std::byte> SVG::jpegData(double scale, double compressionQuality, const Insets& insets) const {
    const auto white = [scale](const SVG& svg) { return rasterize(svg, scale, Background::white); };
    return encodedJpeg(insets == Insets{} ? white(*this) : white(expanded(insets)), compressionQuality);
}

std::vector<std::byte> SVG::jpegData(Size size, double scale, double compressionQuality) const {
    return sized(size).jpegData(scale, compressionQuality);
}

std::vector<std::byte> SVG::pdfData() const { return pdfDocument(*this); }

}  // namespace sorvik::draw
