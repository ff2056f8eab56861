#include "sorvikdraw/engine/bitmap_header.h"

#include <png.h>
#include <turbojpeg.h>

#include <limits>
#include <memory>
#include <span>
#include <type_traits>

namespace sorvik::draw {
namespace {

using Bytes = std::span<const std::byte>;

struct CloseJPEG {
    void operator()(void* handle) const { tjDestroy(handle); }
};

std::optional<PixelSize> jpegSize(Bytes bytes) {
    const std::unique_ptr<void, CloseJPEG> handle(tjInitDecompress());
    int width = 0;
    int height = 0;
    int subsampling = 0;
    int colorSpace = 0;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    if (!handle ||
        tjDecompressHeader3(handle.get(), data, bytes.size(), &width, &height, &subsampling, &colorSpace) != 0) {
        return std::nullopt;
    }
    return PixelSize{width, height};
}

struct FreePNG {
    void operator()(png_image* image) const { png_image_free(image); }
};

std::optional<PixelSize> pngSize(Bytes bytes) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    const std::unique_ptr<png_image, FreePNG> freed(&image);
    constexpr png_uint_32 largest = std::numeric_limits<int>::max();
    if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0 || image.width > largest ||
        image.height > largest) {
        return std::nullopt;
    }
    return PixelSize{static_cast<int>(image.width), static_cast<int>(image.height)};
}

}  // namespace

std::optional<PixelSize> pixelSize(const layer_tree::Bitmap& bitmap) {
    if (!bitmap.bytes) {
        return std::nullopt;
    }
    switch (bitmap.format) {
        case layer_tree::Bitmap::Format::jpeg:
            return jpegSize(*bitmap.bytes);
        case layer_tree::Bitmap::Format::png:
            return pngSize(*bitmap.bytes);
    }
    return std::nullopt;
}

}  // namespace sorvik::draw
