// A picture inside a document: its header, then all of its pixels.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "sorvikdraw/engine/bitmap_decoder.h"
#include "sorvikdraw/engine/bitmap_header.h"

namespace {

using namespace sorvik::draw;

constexpr std::int64_t mostPixels = 1'000'000;  // larger ones only take longer

layer_tree::Bitmap bitmapOf(const std::uint8_t* data, std::size_t size) {
    const auto* const bytes = reinterpret_cast<const std::byte*>(data);
    const bool png = size > 0 && data[0] == 0x89;
    return {png ? layer_tree::Bitmap::Format::png : layer_tree::Bitmap::Format::jpeg,
            std::make_shared<const std::vector<std::byte>>(bytes, bytes + size)};
}

/// Reads each of them, so that a sanitizer sees those that were never written.
std::uint32_t mixed(const Pixels& pixels) {
    std::uint32_t all = 0;
    for (std::int64_t i = 0; i < std::int64_t{pixels.width} * pixels.height; ++i) {
        all ^= pixels.values[static_cast<std::size_t>(i)];
    }
    return all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const layer_tree::Bitmap bitmap = bitmapOf(data, size);
    const auto measured = pixelSize(bitmap);
    if (!measured || std::int64_t{measured->width} * measured->height > mostPixels) {
        return 0;
    }
    const auto pixels = decodeBitmap({bitmap, measured->width, measured->height});
    if (!pixels) {
        return 0;
    }
    if (pixels->width != measured->width || pixels->height != measured->height) {
        __builtin_trap();
    }
    volatile std::uint32_t seen = mixed(*pixels) ^ mixed(reduced(*pixels, 2, 3));
    (void)seen;
    return 0;
}
