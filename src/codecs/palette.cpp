#include "codecs/palette.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <tuple>

namespace sorvik::codecs {
namespace {

constexpr std::size_t slotCount = 1024;

// A grey picture is one byte a pixel as it stands: only smaller indices save anything.
constexpr std::size_t greyColourLimit = 16;
constexpr std::size_t colourLimit = 256;

std::size_t slotOf(std::uint32_t colour) {
    return (colour * 2654435769U) >> 22U;  // Fibonacci hashing to 10 bits
}
static_assert(slotCount == std::size_t{1} << (32 - 22));

IndexedPicture::Colour toRgba(std::uint32_t pixel, int channels) {
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
auto paletteOrder(const IndexedPicture::Colour& colour) {
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

PaletteCollector::PaletteCollector(const PixelLayout& layout)
    : layout_(layout), colourLimit_(layout.channels == 1 ? greyColourLimit : colourLimit), slots_(slotCount) {}

bool PaletteCollector::addRow(const std::byte* row) {
    const std::size_t start = indices_.size();
    indices_.resize(start + layout_.width);
    std::uint32_t last = ~pixelAt(row, 0, layout_.channels);
    std::uint8_t index = 0;
    for (std::size_t x = 0; x < layout_.width; ++x) {
        const std::uint32_t pixel = pixelAt(row, x, layout_.channels);
        if (pixel != last) {
            const auto found = indexOf(pixel);
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

std::optional<std::uint8_t> PaletteCollector::indexOf(std::uint32_t colour) {
    std::size_t slot = slotOf(colour);
    while (slots_[slot] != 0 && colours_[slots_[slot] - 1U] != colour) {
        slot = (slot + 1) % slotCount;
    }
    if (slots_[slot] == 0) {
        if (colours_.size() == colourLimit_) {
            return std::nullopt;
        }
        colours_.push_back(colour);
        slots_[slot] = static_cast<std::uint16_t>(colours_.size());
    }
    return static_cast<std::uint8_t>(slots_[slot] - 1);
}

std::uint32_t PaletteCollector::rowCount() const { return static_cast<std::uint32_t>(indices_.size() / layout_.width); }

void PaletteCollector::restoreRow(std::uint32_t y, std::byte* row) const {
    const std::uint8_t* indices = indices_.data() + std::size_t{y} * layout_.width;
    const std::size_t size = layout_.bytesPerPixel();
    for (std::size_t x = 0; x < layout_.width; ++x) {
        std::memcpy(row + x * size, &colours_[indices[x]], size);
    }
}

IndexedPicture PaletteCollector::take() {
    std::vector<std::uint8_t> order(colours_.size());
    std::iota(order.begin(), order.end(), std::uint8_t{0});
    const auto rgba = [&](std::uint8_t index) { return toRgba(colours_[index], layout_.channels); };
    std::sort(order.begin(), order.end(),
              [&](std::uint8_t a, std::uint8_t b) { return paletteOrder(rgba(a)) < paletteOrder(rgba(b)); });

    IndexedPicture picture{{}, std::move(indices_), bitDepthFor(order.size())};
    std::array<std::uint8_t, 256> newIndex{};
    for (const std::uint8_t index : order) {
        newIndex[index] = static_cast<std::uint8_t>(picture.colours.size());
        picture.colours.push_back(rgba(index));
    }
    for (auto& index : picture.indices) {
        index = newIndex[index];
    }
    return picture;
}

void packIndices(const std::uint8_t* indices, std::size_t count, int bitDepth, std::byte* packed) {
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
