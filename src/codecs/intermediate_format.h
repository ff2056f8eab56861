#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "codecs/big_endian.h"
#include "codecs/picture.h"
#include "codecs/png_chunks.h"

/// How the writer lays an intermediate PNG out, so that the reader finds any byte by arithmetic.
///
/// Behind IHDR stands a chunk of our own, then the metadata, then the pixels: one zlib stream of stored
/// blocks, with its two-byte header in an IDAT chunk of its own, each block in one of its own, and its
/// checksum in the last. All blocks but the last are full. Rows carry filter number 0.
namespace sorvik::codecs::intermediate {

/// Ancillary, private, not to be copied by programs that change pixels (by the case of its letters).
inline constexpr ChunkType markChunk = chunkType("soRV");
inline constexpr std::array<std::byte, 1> markData{std::byte{1}};  ///< the version of this layout

inline constexpr std::array<std::byte, 2> zlibHeader{std::byte{0x78}, std::byte{0x01}};
inline constexpr std::size_t blockCapacity = 65535;
inline constexpr std::size_t blockHeaderSize = 5;
inline constexpr std::size_t fullChunkSize = chunkHeaderSize + blockHeaderSize + blockCapacity + chunkTrailerSize;

/// What stands before a block's data: the mark of the last one, the length and its complement.
[[nodiscard]] constexpr std::array<std::byte, blockHeaderSize> blockHeader(std::size_t size, bool last) {
    return {std::byte(last), std::byte(size), std::byte(size >> 8), std::byte(~size), std::byte(~size >> 8)};
}

}  // namespace sorvik::codecs::intermediate
