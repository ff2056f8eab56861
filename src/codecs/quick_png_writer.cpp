#include "codecs/quick_png_writer.h"

#include <vector>

#include "codecs/png_chunks.h"
#include "codecs/png_metadata.h"
#include "codecs/quick_rows.h"
#include "codecs/row_counter.h"
#include "codecs/samples.h"

namespace sorvik::codecs {
namespace {

class QuickPngWriter final : public RowWriter {
public:
    QuickPngWriter(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata)
        : sink_(sink),
          counter_(layout.height),
          swapped_(layout.bitsPerSample == 16 ? layout.rowBytes() : 0),
          rows_(sink, QuickContent::colours, layout.rowBytes(), layout.bytesPerPixel()) {
        writePngHeader(sink_, layout, pngColour(layout), layout.bitsPerSample);
        writePngMetadata(sink_, layout, metadata, true);
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        counter_.take(count);
        for (std::uint32_t y = 0; y < count; ++y) {
            rows_.addRow(inFileOrder(rows + y * stride));
        }
    }

    void finish() override {
        counter_.requireAll();
        rows_.finish();
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

    ByteSink& sink_;
    RowCounter counter_;
    std::vector<std::byte> swapped_;  ///< one row, for 16-bit samples
    QuickRows rows_;
};

}  // namespace

std::unique_ptr<RowWriter> makeQuickPngWriter(ByteSink& sink, const PixelLayout& layout,
                                              const PictureMetadata& metadata) {
    return std::make_unique<QuickPngWriter>(sink, layout, metadata);
}

}  // namespace sorvik::codecs
