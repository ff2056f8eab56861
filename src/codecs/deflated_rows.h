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

enum class RowFiltering { none, byRow };

/// Up to so many bytes a picture is gathered and compressed in one go, which is denser than
/// compressing it as it comes, and faster at the same density.
inline constexpr std::size_t wholeBufferLimit = std::size_t{64} * 1024 * 1024;

[[nodiscard]] constexpr bool fitsWholeBuffer(const RowShape& shape) {
    return shape.rows <= wholeBufferLimit / (shape.rowBytes + 1);
}

/// Filters rows as PNG does and packs them into one zlib stream: the image data of PNG, and of PDF with
/// /Predictor 15. Memory stays bounded by wholeBufferLimit and what its compression takes.
class DeflatedRows {
public:
    /// `level` is 0 to 9, as zlib's scale; for pictures beyond wholeBufferLimit it is not read.
    DeflatedRows(const RowShape& shape, RowFiltering filtering, int level, ByteOutput output);

    /// The next row from the top, with the bytes of its samples in the order of the file.
    void addRow(const std::byte* row);

    /// Hands out what is left. Throws std::logic_error when rows are missing.
    void finish();

private:
    RowShape shape_;
    RowFiltering filtering_;
    int level_;
    ByteOutput output_;
    RowCounter counter_;
    RowFilter filter_;
    ByteBlock filtered_;  ///< the whole picture, or one row when it is streamed
    std::unique_ptr<ZlibStreamer> streamer_;
};

}  // namespace sorvik::codecs
