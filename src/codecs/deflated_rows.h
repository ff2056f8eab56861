#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "codecs/byte_block.h"
#include "codecs/row_counter.h"
#include "codecs/row_filter.h"
#include "codecs/zlib_stream.h"

namespace sorvik::codecs {

/// The size of rows as a file holds them.
struct RowShape {
    std::size_t rowBytes = 0;
    std::size_t bytesPerPixel = 1;  ///< at least 1
    std::uint32_t rows = 0;

    /// With each row's filter number.
    [[nodiscard]] std::size_t filteredBytes() const { return (rowBytes + 1) * rows; }
};

/// Up to so many bytes a picture is gathered and compressed in one go, which is denser than
/// compressing it as it comes, and faster at the same density.
inline constexpr std::size_t wholeBufferLimit = std::size_t{64} * 1024 * 1024;

[[nodiscard]] constexpr bool fitsWholeBuffer(const RowShape& shape) {
    return shape.rows <= wholeBufferLimit / (shape.rowBytes + 1);
}

/// Packs the rows of a picture into one zlib stream as PNG does, each behind the number of its filter: the
/// image data of PNG, and of PDF with /Predictor 15. Drawings stay unfiltered where that is smaller.
/// Memory stays bounded by wholeBufferLimit and what its compression takes.
class DeflatedRows {
public:
    /// `level` is 0 to 9, as zlib's scale; for pictures beyond wholeBufferLimit it is not read.
    DeflatedRows(const RowShape& shape, int level, ByteOutput output);

    /// The next row from the top, with the bytes of its samples in the order of the file. Throws
    /// std::logic_error when the picture has no more.
    void addRow(const std::byte* row);

    /// Hands out what is left. Throws std::logic_error when rows are missing.
    void finish();

private:
    struct Plan {
        bool filter = false;
        int libdeflateLevel = 0;
    };
    [[nodiscard]] Plan plan();
    void filterRows();
    [[nodiscard]] std::byte* slot(std::size_t row) { return slots_.data() + row * (shape_.rowBytes + 1); }

    RowShape shape_;
    int level_;
    ByteOutput output_;
    RowCounter counter_;
    RowFilter filter_;
    ByteBlock slots_;  ///< filter number and row: the whole picture, or one row when it is streamed
    std::unique_ptr<ZlibStreamer> streamer_;
};

}  // namespace sorvik::codecs
