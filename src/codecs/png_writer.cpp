#include "codecs/png_writer.h"

#include <optional>
#include <stdexcept>
#include <vector>

#include "codecs/deflated_rows.h"
#include "codecs/intermediate_png_writer.h"
#include "codecs/palette.h"
#include "codecs/png_chunks.h"
#include "codecs/png_metadata.h"
#include "codecs/quick_png_writer.h"
#include "codecs/row_counter.h"
#include "codecs/samples.h"

namespace sorvik::codecs {
namespace {

RowShape shapeOf(const PixelLayout& layout) { return {layout.rowBytes(), layout.bytesPerPixel(), layout.height}; }

// Colours are red, green and blue in a palette, which contradicts a profile for grey.
bool mayUsePalette(const PixelLayout& layout, const PictureMetadata& metadata) {
    const bool greyProfile = layout.channels <= 2 && profileFits(metadata.icc, layout);
    return layout.bitsPerSample == 8 && fitsWholeBuffer(shapeOf(layout)) && !greyProfile;
}

ByteOutput pixelChunks(ByteSink& sink) {
    return [&sink](std::span<const std::byte> bytes) { writeChunk(sink, chunkType("IDAT"), bytes); };
}

void writeIndices(const IndexedPicture& picture, const PixelLayout& layout, DeflatedRows& rows) {
    std::vector<std::byte> packed(packedSize(layout.width, picture.bitDepth));
    for (std::size_t y = 0; y < layout.height; ++y) {
        packIndices(picture.indices.data() + y * layout.width, layout.width, picture.bitDepth, packed.data());
        rows.addRow(packed.data());
    }
    rows.finish();
}

// Keeps a picture of few colours as indices until it is whole; at the first colour too many it goes
// over to rows of colours, as it does from the start where no palette is possible.
class KeptPngWriter final : public RowWriter {
public:
    KeptPngWriter(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata, int level)
        : sink_(sink),
          layout_(layout),
          counter_(layout.height),
          metadata_(metadata),
          level_(level),
          fileOrder_(layout.rowBytes()) {
        if (mayUsePalette(layout, metadata)) {
            palette_.emplace(layout);
        } else {
            startColours();
        }
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        counter_.take(count);
        for (std::uint32_t y = 0; y < count; ++y) {
            writeRow(rows + y * stride);
        }
    }

    void finish() override {
        counter_.requireAll();
        if (palette_) {
            finishPalette();
        } else {
            colours_->finish();
        }
        writeChunk(sink_, chunkType("IEND"), {});
    }

private:
    void writeRow(const std::byte* row) {
        if (palette_ && !palette_->addRow(row)) {
            leavePalette();
        }
        if (palette_) {
            return;
        }
        if (layout_.bitsPerSample == 16) {
            copySwapped16(row, fileOrder_.data(), fileOrder_.size() / 2);
            row = fileOrder_.data();
        }
        colours_->addRow(row);
    }

    void startColours() {
        writePngHeader(sink_, layout_, pngColour(layout_), layout_.bitsPerSample);
        writePngMetadata(sink_, layout_, metadata_, true);
        colours_.emplace(shapeOf(layout_), level_, pixelChunks(sink_));
    }

    void leavePalette() {
        startColours();
        for (std::uint32_t y = 0; y < palette_->rowCount(); ++y) {
            palette_->restoreRow(y, fileOrder_.data());
            colours_->addRow(fileOrder_.data());
        }
        palette_.reset();
    }

    void finishPalette() {
        const IndexedPicture picture = palette_->take();
        writePngHeader(sink_, layout_, PngColour::palette, picture.bitDepth);
        writePngMetadata(sink_, layout_, metadata_, true);
        writePngPalette(sink_, picture.colours);
        DeflatedRows rows({packedSize(layout_.width, picture.bitDepth), 1, layout_.height}, level_, pixelChunks(sink_));
        writeIndices(picture, layout_, rows);
    }

    ByteSink& sink_;
    PixelLayout layout_;
    RowCounter counter_;
    PictureMetadata metadata_;
    int level_;
    std::vector<std::byte> fileOrder_;         ///< one row
    std::optional<PaletteCollector> palette_;  ///< while a palette is possible
    std::optional<DeflatedRows> colours_;      ///< otherwise
};

}  // namespace

std::unique_ptr<RowWriter> makePngWriter(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata,
                                         const PngOptions& options) {
    requireValid(layout);
    switch (options.purpose) {
        case PngPurpose::intermediate:
            return makeIntermediatePngWriter(sink, layout, metadata);
        case PngPurpose::quick:
            return makeQuickPngWriter(sink, layout, metadata);
        case PngPurpose::kept:
            return std::make_unique<KeptPngWriter>(sink, layout, metadata, options.level);
    }
    throw std::invalid_argument("no such purpose");
}

}  // namespace sorvik::codecs
