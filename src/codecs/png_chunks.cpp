#include "codecs/png_chunks.h"

#include <isa-l/crc.h>

#include <algorithm>
#include <utility>

#include "codecs/big_endian.h"

namespace sorvik::codecs {
namespace {

constexpr ChunkType headerChunk = chunkType("IHDR");
constexpr std::size_t headerDataSize = 13;

// In the order of PixelLayout::channels, from 1.
constexpr std::array<PngColour, 4> colours{PngColour::grey, PngColour::greyAlpha, PngColour::rgb, PngColour::rgbAlpha};

}  // namespace

std::uint32_t pngCrc(std::span<const std::byte> bytes, std::uint32_t crc) {
    return crc32_gzip_refl(crc, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

void writeChunk(ByteSink& sink, ChunkType type, std::span<const std::byte> data) {
    std::vector<std::byte> header;
    appendBigEndian32(header, static_cast<std::uint32_t>(data.size()));
    appendBigEndian32(header, type);
    sink.write(header);
    sink.write(data);
    sink.write(bigEndian32(pngCrc(data, pngCrc(std::span(header).subspan(4)))));
}

void writePngHeader(ByteSink& sink, const PixelLayout& layout, PngColour colour, int bitDepth) {
    sink.write(pngSignature);
    std::vector<std::byte> data;
    appendBigEndian32(data, layout.width);
    appendBigEndian32(data, layout.height);
    data.push_back(static_cast<std::byte>(bitDepth));
    data.push_back(static_cast<std::byte>(colour));
    data.resize(headerDataSize);  // compression, filter method and interlacing are 0
    writeChunk(sink, headerChunk, data);
}

void writePngPalette(ByteSink& sink, std::span<const PaletteColour> palette) {
    std::vector<std::byte> rgb;
    std::vector<std::byte> alpha;
    for (const auto& colour : palette) {
        for (std::size_t i = 0; i < 3; ++i) {
            rgb.push_back(std::byte{colour.rgba[i]});
        }
        if (colour.rgba[3] != 255) {
            alpha.push_back(std::byte{colour.rgba[3]});
        }
    }
    writeChunk(sink, chunkType("PLTE"), rgb);
    if (!alpha.empty()) {
        writeChunk(sink, chunkType("tRNS"), alpha);
    }
}

PngColour pngColour(const PixelLayout& layout) { return colours.at(static_cast<std::size_t>(layout.channels) - 1); }

std::optional<ChunkView> readChunk(std::span<const std::byte> file, std::size_t offset) {
    if (offset > file.size() || file.size() - offset < chunkHeaderSize + chunkTrailerSize) {
        return std::nullopt;
    }
    const auto rest = file.subspan(offset);
    const std::size_t length = readBigEndian32(rest.data());
    if (length > rest.size() - chunkHeaderSize - chunkTrailerSize) {
        return std::nullopt;
    }
    const auto typeAndData = rest.subspan(4, 4 + length);
    if (pngCrc(typeAndData) != readBigEndian32(rest.data() + chunkHeaderSize + length)) {
        return std::nullopt;
    }
    return ChunkView{readBigEndian32(rest.data() + 4), typeAndData.subspan(4),
                     offset + chunkHeaderSize + length + chunkTrailerSize};
}

std::optional<PixelLayout> readPngHeader(std::span<const std::byte> data) {
    if (data.size() != headerDataSize ||
        std::any_of(data.begin() + 10, data.end(), [](auto b) { return b != std::byte{}; })) {
        return std::nullopt;
    }
    const auto* const colour = std::find(colours.begin(), colours.end(), static_cast<PngColour>(data[9]));
    const PixelLayout layout{readBigEndian32(data.data()), readBigEndian32(data.data() + 4),
                             static_cast<int>(colour - colours.begin()) + 1, std::to_integer<int>(data[8])};
    const bool sides = layout.width - 1 < largestChunk && layout.height - 1 < largestChunk;
    const bool depth = layout.bitsPerSample == 8 || layout.bitsPerSample == 16;
    return sides && depth && colour != colours.end() ? std::optional(layout) : std::nullopt;
}

}  // namespace sorvik::codecs
