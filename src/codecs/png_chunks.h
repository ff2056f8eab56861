#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "codecs/byte_sink.h"
#include "codecs/palette.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// A chunk's type, its four letters read as one big-endian number.
using ChunkType = std::uint32_t;

consteval ChunkType chunkType(const char (&letters)[5]) {
    ChunkType type = 0;
    for (int i = 0; i < 4; ++i) {
        type = type << 8 | static_cast<unsigned char>(letters[i]);
    }
    return type;
}

inline constexpr std::array<std::byte, 8> pngSignature{std::byte{0x89}, std::byte{'P'},  std::byte{'N'},
                                                       std::byte{'G'},  std::byte{'\r'}, std::byte{'\n'},
                                                       std::byte{0x1a}, std::byte{'\n'}};

/// Length, type and CRC, around a chunk's data.
inline constexpr std::size_t chunkHeaderSize = 8;
inline constexpr std::size_t chunkTrailerSize = 4;
inline constexpr std::size_t largestChunk = 0x7fff'ffff;

enum class PngColour : std::uint8_t { grey = 0, rgb = 2, palette = 3, greyAlpha = 4, rgbAlpha = 6 };

/// The CRC of a chunk, over its type and its data; `crc` carries on from an earlier part.
[[nodiscard]] std::uint32_t pngCrc(std::span<const std::byte> bytes, std::uint32_t crc = 0);

/// Writes one chunk; `data` holds at most largestChunk bytes.
void writeChunk(ByteSink& sink, ChunkType type, std::span<const std::byte> data);

/// The signature and IHDR, without interlacing.
void writePngHeader(ByteSink& sink, const PixelLayout& layout, PngColour colour, int bitDepth);

/// PLTE, and tRNS where a colour is not opaque. They stand between the metadata and the pixels.
void writePngPalette(ByteSink& sink, std::span<const PaletteColour> palette);

/// How a layout is stored without a palette.
[[nodiscard]] PngColour pngColour(const PixelLayout& layout);

/// A chunk in a file in memory. `end` is the file offset behind it.
struct ChunkView {
    ChunkType type = 0;
    std::span<const std::byte> data;
    std::size_t end = 0;
};

/// The chunk at a file offset; absent when it does not lie in the file whole, or its CRC is wrong.
[[nodiscard]] std::optional<ChunkView> readChunk(std::span<const std::byte> file, std::size_t offset);

/// What IHDR says; absent for what a PixelLayout can't hold (palettes, fewer than 8 bits, interlacing).
[[nodiscard]] std::optional<PixelLayout> readPngHeader(std::span<const std::byte> data);

}  // namespace sorvik::codecs
