#include "imaging/sips/fitting_writer.h"

#include <cstring>

namespace sorvik::sips {

namespace {

template <typename Sample>
unsigned sampleAt(const std::byte* place) {
    Sample sample = 0;
    std::memcpy(&sample, place, sizeof(Sample));
    return static_cast<unsigned>(sample >> 8 * (sizeof(Sample) - 1));
}

/// `shade` seen through `alpha` on white.
constexpr unsigned onWhite(unsigned shade, unsigned alpha) { return (shade * alpha + 255 * (255 - alpha) + 127) / 255; }

template <typename Sample>
void fitRow(const std::byte* from, std::byte* to, const codecs::PixelLayout& source,
            const codecs::PixelLayout& fitted) {
    const auto channels = static_cast<std::size_t>(source.channels);
    const auto kept = static_cast<std::size_t>(fitted.channels);
    for (std::uint32_t x = 0; x < source.width; ++x, from += source.bytesPerPixel()) {
        const unsigned alpha = kept < channels ? sampleAt<Sample>(from + (channels - 1) * sizeof(Sample)) : 255;
        for (std::size_t i = 0; i < kept; ++i) {
            *to++ = std::byte(onWhite(sampleAt<Sample>(from + i * sizeof(Sample)), alpha));
        }
    }
}

}  // namespace

void FittingWriter::writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) {
    const auto fit = source_.bitsPerSample == 16 ? fitRow<std::uint16_t> : fitRow<std::uint8_t>;
    for (std::uint32_t i = 0; i < count; ++i) {
        fit(rows + i * stride, row_.data(), source_, fitted_);
        target_.writeRows(row_.data(), row_.size(), 1);
    }
}

codecs::PixelLayout fitted(const codecs::PixelLayout& source, bool alpha, bool deep) {
    codecs::PixelLayout layout = source;
    layout.channels -= source.hasAlpha() && !alpha ? 1 : 0;
    layout.bitsPerSample = deep ? source.bitsPerSample : 8;
    return layout;
}

}  // namespace sorvik::sips
