#include "likeness.h"

#include <algorithm>
#include <cstdlib>

namespace sorvik::draw::test {

namespace {

int premultiplied(const Pixel& pixel, std::size_t channel) {
    const int alpha = pixel[3];
    return channel == 3 ? alpha : (pixel[channel] * alpha + 127) / 255;
}

int difference(const Pixel& one, const Pixel& other) {
    int largest = 0;
    for (std::size_t channel = 0; channel < one.size(); ++channel) {
        largest = std::max(largest, std::abs(premultiplied(one, channel) - premultiplied(other, channel)));
    }
    return largest;
}

}  // namespace

bool Likeness::agrees() const { return sameSize && beyond8 * 100 <= pixels && beyond32 * 1000 <= pixels; }

std::string Likeness::figures() const {
    if (!sameSize) {
        return "the sizes differ";
    }
    return "of " + std::to_string(pixels) + " pixels, " + std::to_string(beyond8) + " differ by more than 8, " +
           std::to_string(beyond32) + " by more than 32, one by " + std::to_string(largest);
}

Likeness compare(const Pixels& one, const Pixels& other) {
    Likeness likeness;
    likeness.sameSize = one.width == other.width && one.height == other.height;
    if (!likeness.sameSize) {
        return likeness;
    }
    likeness.pixels = std::size_t{one.width} * one.height;
    for (std::uint32_t y = 0; y < one.height; ++y) {
        for (std::uint32_t x = 0; x < one.width; ++x) {
            const int off = difference(one.at(x, y), other.at(x, y));
            likeness.beyond8 += off > 8 ? 1 : 0;
            likeness.beyond32 += off > 32 ? 1 : 0;
            likeness.largest = std::max(likeness.largest, off);
        }
    }
    return likeness;
}

}  // namespace sorvik::draw::test
