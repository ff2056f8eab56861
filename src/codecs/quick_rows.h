#pragma once

#include <cstddef>

#include "codecs/byte_block.h"
#include "codecs/byte_sink.h"
#include "codecs/quick_filter.h"
#include "codecs/zlib_stream.h"

namespace sorvik::codecs {

/// Filters and compresses the rows of a drawing into the IDAT chunks of a PNG as they come. Its memory is that of some
/// rows, and less than a megabyte besides.
class QuickRows {
public:
    /// As QuickFilter's. `sink` must outlive it.
    QuickRows(ByteSink& sink, QuickContent content, std::size_t rowBytes, std::size_t bytesPerPixel);

    /// The next row from the top, with the bytes of its samples in the order of the file.
    void addRow(const std::byte* row);

    /// Hands out what is left. To be called once.
    void finish();

private:
    void compressGathered();

    std::size_t slotBytes_;  ///< of a filtered row with its filter's number
    QuickFilter filter_;
    ByteBlock gathered_;
    ZlibStreamer zlib_;
};

}  // namespace sorvik::codecs
