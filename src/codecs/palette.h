#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "codecs/colour_table.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

struct PaletteColour {
    std::array<std::uint8_t, 4> rgba;
};

/// Up to 256 colours in the order of a file.
struct Palette {
    std::vector<PaletteColour> colours;                         ///< from dark to light, those not opaque first
    std::array<std::uint8_t, ColourTable::largest> newIndex{};  ///< for what was a colour's number before
    int bitDepth = 8;                                           ///< 1, 2, 4 or 8: the least that holds every index
};

/// Brings 1 to 256 colours, numbered as they stand, into the order of a file.
[[nodiscard]] Palette arrangePalette(std::span<const PaletteColour> colours);

/// The colours of a picture of few colours, and its pixels as numbers of them.
struct IndexedPicture {
    std::vector<PaletteColour> colours;  ///< as in a Palette
    std::vector<std::uint8_t> indices;   ///< one a pixel, rows from the top without padding
    int bitDepth = 8;                    ///< a Palette's
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
    PixelLayout layout_;
    ColourTable table_;  ///< of a pixel's bytes as they lie in memory
    std::vector<std::uint8_t> indices_;
};

/// The bytes that so many indices of `bitDepth` bits take.
[[nodiscard]] constexpr std::size_t packedSize(std::size_t count, int bitDepth) {
    return (count * static_cast<unsigned>(bitDepth) + 7) / 8;
}

/// Packs indices of `bitDepth` bits into bytes, the leftmost in the highest bits.
void packIndices(const std::uint8_t* indices, std::size_t count, int bitDepth, std::byte* packed);

}  // namespace sorvik::codecs
