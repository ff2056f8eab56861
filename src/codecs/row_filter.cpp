#include "codecs/row_filter.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace sorvik::codecs {
namespace {

// The neighbours of a row's bytes: at index i the byte itself, the one on its left, the one above and
// the one above on the left.
struct Neighbours {
    const std::uint8_t* current;
    const std::uint8_t* left;
    const std::uint8_t* above;
    const std::uint8_t* aboveLeft;
};

// Sums are kept in 16 bits over stretches short enough for it, which keeps the loops' vectors full.
constexpr std::size_t stretch = 256;

std::uint8_t magnitude(std::uint8_t difference) {
    return std::min(difference, static_cast<std::uint8_t>(0U - difference));
}

std::uint8_t paeth(int left, int above, int aboveLeft) {
    const int toLeft = std::abs(above - aboveLeft);
    const int toAbove = std::abs(left - aboveLeft);
    const int toAboveLeft = std::abs(left + above - 2 * aboveLeft);
    const int nearer = toAbove <= toAboveLeft ? above : aboveLeft;
    return static_cast<std::uint8_t>(toLeft <= toAbove && toLeft <= toAboveLeft ? left : nearer);
}

// Writes current - predicted for `count` bytes; answers the sum of the differences' magnitudes.
template <typename Predict>
std::uint64_t subtract(const Neighbours& in, std::size_t count, std::uint8_t* out, const Predict& predict) {
    std::uint64_t sum = 0;
    for (std::size_t start = 0; start < count; start += stretch) {
        const std::size_t end = std::min(count, start + stretch);
        std::uint16_t part = 0;
        for (std::size_t i = start; i < end; ++i) {
            const auto difference = static_cast<std::uint8_t>(in.current[i] - predict(i));
            out[i] = difference;
            part = static_cast<std::uint16_t>(part + magnitude(difference));
        }
        sum += part;
    }
    return sum;
}

using Filter = std::uint64_t (*)(const Neighbours&, std::size_t, std::uint8_t*);

// In the order of their numbers in the file.
constexpr std::array<Filter, 5> filters{
    [](const Neighbours& in, std::size_t count, std::uint8_t* out) {
        return subtract(in, count, out, [](std::size_t) { return 0; });
    },
    [](const Neighbours& in, std::size_t count, std::uint8_t* out) {
        return subtract(in, count, out, [&](std::size_t i) { return in.left[i]; });
    },
    [](const Neighbours& in, std::size_t count, std::uint8_t* out) {
        return subtract(in, count, out, [&](std::size_t i) { return in.above[i]; });
    },
    [](const Neighbours& in, std::size_t count, std::uint8_t* out) {
        return subtract(in, count, out, [&](std::size_t i) { return (in.left[i] + in.above[i]) / 2; });
    },
    [](const Neighbours& in, std::size_t count, std::uint8_t* out) {
        return subtract(in, count, out, [&](std::size_t i) { return paeth(in.left[i], in.above[i], in.aboveLeft[i]); });
    },
};

}  // namespace

RowFilter::RowFilter(std::size_t rowBytes, std::size_t bytesPerPixel)
    : rowBytes_(rowBytes),
      bytesPerPixel_(bytesPerPixel),
      above_(bytesPerPixel + rowBytes),
      current_(bytesPerPixel + rowBytes),
      candidate_(rowBytes) {}

void RowFilter::filter(const std::byte* row, std::byte* filtered) {
    std::memcpy(current_.data() + bytesPerPixel_, row, rowBytes_);
    const Neighbours neighbours{current_.data() + bytesPerPixel_, current_.data(), above_.data() + bytesPerPixel_,
                                above_.data()};
    std::uint64_t least = std::numeric_limits<std::uint64_t>::max();
    for (std::size_t number = 0; number < filters.size(); ++number) {
        const std::uint64_t sum = filters[number](neighbours, rowBytes_, candidate_.data());
        if (sum < least) {
            least = sum;
            filtered[0] = static_cast<std::byte>(number);
            std::memcpy(filtered + 1, candidate_.data(), rowBytes_);
        }
    }
    above_.swap(current_);
}

void RowFilter::copy(const std::byte* row, std::size_t rowBytes, std::byte* filtered) {
    filtered[0] = std::byte{0};
    std::memcpy(filtered + 1, row, rowBytes);
}

}  // namespace sorvik::codecs
