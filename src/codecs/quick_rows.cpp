#include "codecs/quick_rows.h"

#include <algorithm>

#include "codecs/png_chunks.h"

namespace sorvik::codecs {
namespace {

// Filtered rows are gathered to so many bytes: the compressor is slow at taking small pieces, and these stay in the
// processor's cache.
constexpr std::size_t gatheredBytes = std::size_t{64} * 1024;

}  // namespace

QuickRows::QuickRows(ByteSink& sink, QuickContent content, std::size_t rowBytes, std::size_t bytesPerPixel)
    : slotBytes_(rowBytes + 1),
      filter_(content, rowBytes, bytesPerPixel),
      gathered_(std::max(slotBytes_, gatheredBytes)),
      zlib_([&sink](std::span<const std::byte> bytes) { writeChunk(sink, chunkType("IDAT"), bytes); },
            StreamEffort::quick) {}

void QuickRows::addRow(const std::byte* row) {
    if (gathered_.capacity() - gathered_.size() < slotBytes_) {
        compressGathered();
    }
    filter_.filter(row, gathered_.data() + gathered_.size());
    gathered_.setSize(gathered_.size() + slotBytes_);
}

void QuickRows::finish() {
    compressGathered();
    zlib_.finish();
}

void QuickRows::compressGathered() {
    zlib_.write(gathered_.bytes());
    gathered_.setSize(0);
}

}  // namespace sorvik::codecs
