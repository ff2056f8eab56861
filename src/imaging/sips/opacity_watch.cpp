#include "imaging/sips/opacity_watch.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace sorvik::sips {

namespace {

// Without an early end the loop runs as vector code; most pictures are read to the end anyway.
template <typename Sample>
bool anyBelowFull(const std::byte* row, const codecs::PixelLayout& layout) {
    const std::size_t step = layout.bytesPerPixel();
    const std::byte* alpha = row + step - sizeof(Sample);
    Sample least = std::numeric_limits<Sample>::max();
    for (std::uint32_t x = 0; x < layout.width; ++x, alpha += step) {
        Sample sample = 0;
        std::memcpy(&sample, alpha, sizeof(Sample));
        least = std::min(least, sample);
    }
    return least != std::numeric_limits<Sample>::max();
}

}  // namespace

void OpacityWatch::writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count && layout_.hasAlpha() && !transparent_; ++i) {
        transparent_ = rowIsTransparent(rows + i * stride, layout_);
    }
    target_.writeRows(rows, stride, count);
}

bool rowIsTransparent(const std::byte* row, const codecs::PixelLayout& layout) {
    return layout.bitsPerSample == 16 ? anyBelowFull<std::uint16_t>(row, layout)
                                      : anyBelowFull<std::uint8_t>(row, layout);
}

}  // namespace sorvik::sips
