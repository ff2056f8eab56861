#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "codecs/picture.h"

namespace sorvik::codecs {

/// The colours of a picture of few colours, and its pixels as numbers of them.
struct IndexedPicture {
    struct Colour {
        std::array<std::uint8_t, 4> rgba;
    };
    std::vector<Colour> colours;        ///< from dark to light, those that are not opaque first
    std::vector<std::uint8_t> indices;  ///< one a pixel, rows from the top without padding
    int bitDepth = 8;                   ///< 1, 2, 4 or 8: the least that holds every index
};

/// Counts the colours of a picture of 8 bits a sample while its rows come, up to 256.
class PaletteCollector {
public:
    explicit PaletteCollector(const PixelLayout& layout);

    /// Takes the next row from the top. False as soon as there are more colours than a palette is
    /// worth; the row is not taken then.
    [[nodiscard]] bool addRow(const std::byte* row);

    /// Rebuilds a row that was taken, layout.rowBytes() bytes.
    void restoreRow(std::uint32_t y, std::byte* row) const;
    [[nodiscard]] std::uint32_t rowCount() const;

    /// The picture of the rows taken.
    [[nodiscard]] IndexedPicture take();

private:
    [[nodiscard]] std::optional<std::uint8_t> indexOf(std::uint32_t colour);

    PixelLayout layout_;
    std::size_t colourLimit_;
    std::vector<std::uint32_t> colours_;  ///< a pixel's bytes as they lie in memory, in order of appearance
    std::vector<std::uint16_t> slots_;    ///< open-addressed hash table of places in colours_, plus 1
    std::vector<std::uint8_t> indices_;
};

/// Packs indices of `bitDepth` bits into bytes, the leftmost in the highest bits.
void packIndices(const std::uint8_t* indices, std::size_t count, int bitDepth, std::byte* packed);

}  // namespace sorvik::codecs
