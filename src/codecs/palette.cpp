#include "codecs/palette.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <tuple>
#include <utility>

namespace sorvik::codecs {
namespace {

// A grey picture is one byte a pixel as it stands: only smaller indices save anything.
constexpr std::size_t greyColourLimit = 16;

PaletteColour toRgba(std::uint32_t pixel, int channels) {
    std::array<std::uint8_t, 4> bytes{};
    std::memcpy(bytes.data(), &pixel, bytes.size());
    switch (channels) {
        case 1:
            return {{bytes[0], bytes[0], bytes[0], 255}};
        case 2:
            return {{bytes[0], bytes[0], bytes[0], bytes[1]}};
        case 3:
            return {{bytes[0], bytes[1], bytes[2], 255}};
        default:
            return {bytes};
    }
}

// Neighbours in brightness get neighbouring numbers, which filters can use; the alpha table ends at the
// last colour that is not opaque.
auto paletteOrder(const PaletteColour& colour) {
    const auto& [red, green, blue, alpha] = colour.rgba;
    return std::tuple(alpha == 255, 299 * red + 587 * green + 114 * blue, colour.rgba);
}

int bitDepthFor(std::size_t colours) { return colours <= 2 ? 1 : colours <= 4 ? 2 : colours <= 16 ? 4 : 8; }

template <std::size_t channels>
std::uint32_t pixelAt(const std::byte* row, std::size_t x) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + x * channels, channels);
    return pixel;
}

std::uint32_t pixelAt(const std::byte* row, std::size_t x, int channels) {
    switch (channels) {
        case 1:
            return pixelAt<1>(row, x);
        case 2:
            return pixelAt<2>(row, x);
        case 3:
            return pixelAt<3>(row, x);
        default:
            return pixelAt<4>(row, x);
    }
}

}  // namespace

Palette arrangePalette(std::span<const PaletteColour> colours) {
    std::vector<std::uint8_t> order(colours.size());
    std::iota(order.begin(), order.end(), std::uint8_t{0});
    std::ranges::sort(order, {}, [&](std::uint8_t index) { return paletteOrder(colours[index]); });
    Palette palette{.colours = {}, .newIndex = {}, .bitDepth = bitDepthFor(order.size())};
    for (const std::uint8_t index : order) {
        palette.newIndex[index] = static_cast<std::uint8_t>(palette.colours.size());
        palette.colours.push_back(colours[index]);
    }
    return palette;
}

PaletteCollector::PaletteCollector(const PixelLayout& layout)
    : layout_(layout), table_(layout.channels == 1 ? greyColourLimit : ColourTable::largest) {}

bool PaletteCollector::addRow(const std::byte* row) {
    const std::size_t start = indices_.size();
    indices_.resize(start + layout_.width);
    std::uint32_t last = ~pixelAt(row, 0, layout_.channels);
    std::uint8_t index = 0;
    for (std::size_t x = 0; x < layout_.width; ++x) {
        const std::uint32_t pixel = pixelAt(row, x, layout_.channels);
        if (pixel != last) {
            const auto found = table_.indexOf(pixel);
            if (!found) {
                indices_.resize(start);
                return false;
            }
            index = *found;
            last = pixel;
        }
        indices_[start + x] = index;
    }
    return true;
}

std::uint32_t PaletteCollector::rowCount() const { return static_cast<std::uint32_t>(indices_.size() / layout_.width); }

void PaletteCollector::restoreRow(std::uint32_t y, std::byte* row) const {
    const std::uint8_t* indices = indices_.data() + std::size_t{y} * layout_.width;
    const std::size_t size = layout_.bytesPerPixel();
    const auto colours = table_.colours();
    for (std::size_t x = 0; x < layout_.width; ++x) {
        std::memcpy(row + x * size, &colours[indices[x]], size);
    }
}

IndexedPicture PaletteCollector::take() {
    std::vector<PaletteColour> colours;
    for (const std::uint32_t pixel : table_.colours()) {
        colours.push_back(toRgba(pixel, layout_.channels));
    }
    Palette palette = arrangePalette(colours);
    IndexedPicture picture{std::move(palette.colours), std::move(indices_), palette.bitDepth};
    for (auto& index : picture.indices) {
        index = palette.newIndex[index];
    }
    return picture;
}

void packIndices(const std::uint8_t* indices, std::size_t count, int bitDepth, std::byte* packed) {
    if (bitDepth == 8) {
        std::memcpy(packed, indices, count);
        return;
    }
    const std::size_t perByte = 8U / static_cast<unsigned>(bitDepth);
    for (std::size_t start = 0; start < count; start += perByte) {
        unsigned byte = 0;
        for (std::size_t i = start; i < start + perByte; ++i) {
            byte = byte << bitDepth | (i < count ? indices[i] : 0U);
        }
        *packed++ = static_cast<std::byte>(byte);
    }
}

}  // namespace sorvik::codecs
