#include "codecs/quick_png_writer.h"

#include <algorithm>
#include <vector>

#include "codecs/byte_block.h"
#include "codecs/png_chunks.h"
#include "codecs/png_metadata.h"
#include "codecs/quick_filter.h"
#include "codecs/row_counter.h"
#include "codecs/samples.h"
#include "codecs/zlib_stream.h"

namespace sorvik::codecs {
namespace {

// Filtered rows are gathered to so many bytes: the compressor is slow at taking small pieces, and these stay in the
// processor's cache.
constexpr std::size_t gatheredBytes = std::size_t{64} * 1024;

class QuickPngWriter final : public RowWriter {
public:
    QuickPngWriter(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata)
        : sink_(sink),
          slotBytes_(layout.rowBytes() + 1),
          counter_(layout.height),
          swapped_(layout.bitsPerSample == 16 ? layout.rowBytes() : 0),
          filter_(layout.rowBytes(), layout.bytesPerPixel()),
          gathered_(std::max(slotBytes_, gatheredBytes)),
          zlib_([&sink](std::span<const std::byte> bytes) { writeChunk(sink, chunkType("IDAT"), bytes); },
                StreamEffort::quick) {
        writePngHeader(sink_, layout, pngColour(layout), layout.bitsPerSample);
        writePngMetadata(sink_, layout, metadata, true);
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        counter_.take(count);
        for (std::uint32_t y = 0; y < count; ++y) {
            if (gathered_.capacity() - gathered_.size() < slotBytes_) {
                compressGathered();
            }
            filter_.filter(inFileOrder(rows + y * stride), gathered_.data() + gathered_.size());
            gathered_.setSize(gathered_.size() + slotBytes_);
        }
    }

    void finish() override {
        counter_.requireAll();
        compressGathered();
        zlib_.finish();
        writeChunk(sink_, chunkType("IEND"), {});
    }

private:
    const std::byte* inFileOrder(const std::byte* row) {
        if (swapped_.empty()) {
            return row;
        }
        copySwapped16(row, swapped_.data(), swapped_.size() / 2);
        return swapped_.data();
    }

    void compressGathered() {
        zlib_.write(gathered_.bytes());
        gathered_.setSize(0);
    }

    ByteSink& sink_;
    std::size_t slotBytes_;  ///< of a filtered row with its filter's number
    RowCounter counter_;
    std::vector<std::byte> swapped_;  ///< one row, for 16-bit samples
    QuickFilter filter_;
    ByteBlock gathered_;
    ZlibStreamer zlib_;
};

}  // namespace

std::unique_ptr<RowWriter> makeQuickPngWriter(ByteSink& sink, const PixelLayout& layout,
                                              const PictureMetadata& metadata) {
    return std::make_unique<QuickPngWriter>(sink, layout, metadata);
}

}  // namespace sorvik::codecs
