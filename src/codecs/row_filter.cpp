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

// Sums are kept in 16 bits over stretches short enough for it: narrow types keep the loops' vectors full,
// as does arithmetic in bytes and 16-bit words below.
constexpr std::size_t stretch = 256;

std::uint8_t magnitude(std::uint8_t difference) {
    const auto opposite = static_cast<std::uint8_t>(0U - difference);
    return difference < opposite ? difference : opposite;
}

std::uint8_t distance(std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a < b ? b - a : a - b); }

// Rounds down. The sum of two bytes does not fit a byte.
std::uint8_t average(std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>((a & b) + ((a ^ b) >> 1)); }

// The neighbour nearest to left + above - aboveLeft. Where left and above lie on different sides of
// aboveLeft, that point is nearest to aboveLeft by the difference of the other two distances; on the same
// side it is farther from it than from the others.
std::uint8_t paeth(std::uint8_t left, std::uint8_t above, std::uint8_t aboveLeft) {
    const std::uint8_t toLeft = distance(above, aboveLeft);
    const std::uint8_t toAbove = distance(left, aboveLeft);
    const bool between = (left < aboveLeft) != (above < aboveLeft);
    const auto toAboveLeft = between ? distance(toLeft, toAbove) : std::uint8_t{255};
    const std::uint8_t nearer = toAbove <= toAboveLeft ? above : aboveLeft;
    return toLeft <= toAbove && toLeft <= toAboveLeft ? left : nearer;
}

// Writes current - predicted for `count` bytes; answers the sum of the differences' magnitudes.
template <typename Predict>
std::uint64_t subtract(const Neighbours& in, std::size_t count, std::uint8_t* __restrict out, const Predict& predict) {
    const std::uint8_t* const current = in.current;
    const std::uint8_t* const left = in.left;
    const std::uint8_t* const above = in.above;
    const std::uint8_t* const aboveLeft = in.aboveLeft;
    std::uint64_t sum = 0;
    for (std::size_t start = 0; start < count; start += stretch) {
        const std::size_t end = count - start < stretch ? count : start + stretch;
        std::uint16_t part = 0;
        for (std::size_t i = start; i < end; ++i) {
            const auto difference = static_cast<std::uint8_t>(current[i] - predict(left[i], above[i], aboveLeft[i]));
            out[i] = difference;
            part = static_cast<std::uint16_t>(part + magnitude(difference));
        }
        sum += part;
    }
    return sum;
}

using Byte = std::uint8_t;
using Filter = std::uint64_t (*)(const Neighbours&, std::size_t, std::uint8_t*);

template <auto predict>
std::uint64_t filterBy(const Neighbours& in, std::size_t count, std::uint8_t* out) {
    return subtract(in, count, out, predict);
}

// In the order of their numbers in the file.
constexpr std::array<Filter, 5> filters{
    filterBy<[](Byte, Byte, Byte) { return Byte{0}; }>,
    filterBy<[](Byte left, Byte, Byte) { return left; }>,
    filterBy<[](Byte, Byte above, Byte) { return above; }>,
    filterBy<[](Byte left, Byte above, Byte) { return average(left, above); }>,
    filterBy<[](Byte left, Byte above, Byte aboveLeft) { return paeth(left, above, aboveLeft); }>,
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

void RowFilter::restartBelow(const std::byte* above) {
    std::uint8_t* const row = above_.data() + bytesPerPixel_;
    if (above != nullptr) {
        std::memcpy(row, above, rowBytes_);
    } else {
        std::fill_n(row, rowBytes_, std::uint8_t{0});
    }
}

}  // namespace sorvik::codecs
