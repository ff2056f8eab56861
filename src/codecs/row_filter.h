#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace sorvik::codecs {

/// Filters the rows of one picture as PNG does (ISO/IEC 15948, clause 9), by default with the one of
/// the five filters whose result has the least sum of absolute differences.
class RowFilter {
public:
    /// `bytesPerPixel` is the distance to the byte on the left, 1 where pixels are smaller than a byte.
    RowFilter(std::size_t rowBytes, std::size_t bytesPerPixel);

    /// Takes the next row from the top, rowBytes bytes, and writes the filter's number and the
    /// filtered row to `filtered`, rowBytes + 1 bytes. `row` may lie at filtered + 1.
    void filter(const std::byte* row, std::byte* filtered);

    /// Goes on below the row `above`; null goes back to the top.
    void restartBelow(const std::byte* above);

private:
    std::size_t rowBytes_;
    std::size_t bytesPerPixel_;
    // Rows with one pixel of zeros before them, so that no filter needs to know the first pixel.
    std::vector<std::uint8_t> above_;
    std::vector<std::uint8_t> current_;
    std::vector<std::uint8_t> candidate_;
};

}  // namespace sorvik::codecs
