#pragma once

#include <string>

#include "png_pixels.h"

namespace sorvik::draw::test {

/// How far two pictures are from each other. A pixel's difference is the largest of its four channels', premultiplied.
struct Likeness {
    bool sameSize = false;
    std::size_t pixels = 0;
    std::size_t beyond8 = 0;   ///< pixels that differ by more than 8 of 255
    std::size_t beyond32 = 0;  ///< and by more than 32
    int largest = 0;

    /// The edges of shapes may be smoothed a little differently, no more.
    [[nodiscard]] bool agrees() const;
    [[nodiscard]] std::string figures() const;
};

Likeness compare(const Pixels& one, const Pixels& other);

}  // namespace sorvik::draw::test
