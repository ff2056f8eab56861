#pragma once

#include <cstddef>
#include <vector>

#include "codecs/row_filter.h"

namespace sorvik::codecs {

enum class QuickContent { colours, indices };

/// Filters the rows of drawings at a part of RowFilter's cost. Rows of areas and outlines stay as they are or become
/// their difference from the row above, by which of both has the longer runs; rows of embedded photographs, which
/// have none either way, are left to RowFilter unless they are indices.
class QuickFilter {
public:
    /// As RowFilter's.
    QuickFilter(QuickContent content, std::size_t rowBytes, std::size_t bytesPerPixel);

    /// Takes the next row from the top, rowBytes bytes, and writes the filter's number and the filtered row to
    /// `filtered`, rowBytes + 1 bytes elsewhere.
    void filter(const std::byte* row, std::byte* filtered);

private:
    enum class Way { plain, fromAbove, photograph };
    [[nodiscard]] Way wayFor(const std::byte* row) const;

    QuickContent content_;
    std::size_t rowBytes_;
    std::size_t bytesPerPixel_;
    Way way_ = Way::plain;  ///< of the last row
    std::vector<std::byte> above_;
    RowFilter photographFilter_;
};

}  // namespace sorvik::codecs
