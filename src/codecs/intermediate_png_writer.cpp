#include "codecs/intermediate_png_writer.h"

#include <isa-l/igzip_lib.h>

#include <cstring>
#include <vector>

#include "codecs/intermediate_format.h"
#include "codecs/png_metadata.h"
#include "codecs/row_counter.h"
#include "codecs/samples.h"

namespace sorvik::codecs {
namespace {

using namespace intermediate;

constexpr ChunkType pixelChunk = chunkType("IDAT");
constexpr std::size_t blockStart = chunkHeaderSize + blockHeaderSize;

class IntermediatePngWriter final : public RowWriter {
public:
    IntermediatePngWriter(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata)
        : sink_(sink),
          layout_(layout),
          counter_(layout.height),
          chunk_(fullChunkSize),
          swapped_(layout.bitsPerSample == 16 ? layout.rowBytes() : 0) {
        writePngHeader(sink_, layout, pngColour(layout), layout.bitsPerSample);
        writeChunk(sink_, markChunk, markData);
        writePngMetadata(sink_, layout, metadata, false);
        writeChunk(sink_, pixelChunk, zlibHeader);
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        counter_.take(count);
        for (std::uint32_t y = 0; y < count; ++y) {
            constexpr std::byte noFilter{0};
            put({&noFilter, 1});
            put(inFileOrder(rows + y * stride));
        }
    }

    void finish() override {
        counter_.requireAll();
        writeBlock(true);
        writeChunk(sink_, pixelChunk, bigEndian32(adler_));
        writeChunk(sink_, chunkType("IEND"), {});
    }

private:
    std::span<const std::byte> inFileOrder(const std::byte* row) {
        if (swapped_.empty()) {
            return {row, layout_.rowBytes()};
        }
        copySwapped16(row, swapped_.data(), swapped_.size() / 2);
        return swapped_;
    }

    // A full block waits until more bytes come: it may be the last.
    void put(std::span<const std::byte> bytes) {
        while (!bytes.empty()) {
            if (filled_ == blockCapacity) {
                writeBlock(false);
            }
            const std::size_t count = std::min(bytes.size(), blockCapacity - filled_);
            std::memcpy(chunk_.data() + blockStart + filled_, bytes.data(), count);
            filled_ += count;
            bytes = bytes.subspan(count);
        }
    }

    // Puts the chunk together where the block's data lie already, for one write and no other copy.
    void writeBlock(bool last) {
        const auto place = [this](std::size_t offset, std::span<const std::byte> bytes) {
            std::copy(bytes.begin(), bytes.end(), chunk_.begin() + static_cast<std::ptrdiff_t>(offset));
        };
        const std::size_t end = blockStart + filled_;
        place(0, bigEndian32(static_cast<std::uint32_t>(blockHeaderSize + filled_)));
        place(4, bigEndian32(pixelChunk));
        place(chunkHeaderSize, blockHeader(filled_, last));
        place(end, bigEndian32(pngCrc({chunk_.data() + 4, end - 4})));
        adler_ = isal_adler32(adler_, reinterpret_cast<const unsigned char*>(chunk_.data() + blockStart), filled_);
        sink_.write(std::span(chunk_).first(end + chunkTrailerSize));
        filled_ = 0;
    }

    ByteSink& sink_;
    PixelLayout layout_;
    RowCounter counter_;
    std::vector<std::byte> chunk_;    ///< one IDAT chunk with one stored block
    std::vector<std::byte> swapped_;  ///< one row, for 16-bit samples
    std::size_t filled_ = 0;          ///< bytes of the block's data
    std::uint32_t adler_ = 1;
};

}  // namespace

std::unique_ptr<RowWriter> makeIntermediatePngWriter(ByteSink& sink, const PixelLayout& layout,
                                                     const PictureMetadata& metadata) {
    return std::make_unique<IntermediatePngWriter>(sink, layout, metadata);
}

}  // namespace sorvik::codecs
