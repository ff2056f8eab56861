#include "codecs/samples.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace sorvik::codecs {
namespace {

constexpr std::size_t profileHeaderSize = 128;
constexpr std::size_t profileColourSpaceOffset = 16;

}  // namespace

void requireValid(const PixelLayout& layout) {
    constexpr std::uint32_t largest = std::numeric_limits<std::int32_t>::max();
    const bool sidesFit = std::clamp(layout.width, 1U, largest) == layout.width &&
                          std::clamp(layout.height, 1U, largest) == layout.height;
    const bool samplesFit =
        layout.channels >= 1 && layout.channels <= 4 && (layout.bitsPerSample == 8 || layout.bitsPerSample == 16);
    if (!sidesFit || !samplesFit) {
        throw std::invalid_argument("no picture has this layout");
    }
}

bool profileFits(const std::vector<std::byte>& icc, const PixelLayout& layout) {
    constexpr std::array<char, 4> grey{'G', 'R', 'A', 'Y'};
    constexpr std::array<char, 4> rgb{'R', 'G', 'B', ' '};
    const auto& wanted = layout.channels <= 2 ? grey : rgb;
    return icc.size() >= profileHeaderSize &&
           std::memcmp(icc.data() + profileColourSpaceOffset, wanted.data(), wanted.size()) == 0;
}

void copySwapped16(const std::byte* from, std::byte* to, std::size_t count) {
    if constexpr (std::endian::native == std::endian::big) {
        std::memcpy(to, from, count * 2);
    } else {
        for (std::size_t i = 0; i < count; ++i) {
            std::uint16_t sample = 0;
            std::memcpy(&sample, from + 2 * i, 2);
            sample = static_cast<std::uint16_t>(sample << 8 | sample >> 8);
            std::memcpy(to + 2 * i, &sample, 2);
        }
    }
}

}  // namespace sorvik::codecs
