#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace sorvik::sips {

struct RiffChunk {
    std::string_view type;  ///< four characters
    std::span<const std::byte> data;
};

struct RiffChunks {
    std::vector<RiffChunk> chunks;  ///< in the order of the file, only those that lie in it whole
    bool whole = false;             ///< nothing is cut off
};

/// The chunks of a RIFF file, behind its header (RFC 9649, section 2.3). Bytes behind its end count for nothing.
[[nodiscard]] RiffChunks riffChunksOf(std::span<const std::byte> file);

/// The chunks that fill `bytes` from `start` on.
[[nodiscard]] RiffChunks riffChunksIn(std::span<const std::byte> bytes, std::size_t start);

/// The TIFF stream of an EXIF chunk, which some writers begin with the mark of JPEG.
[[nodiscard]] std::span<const std::byte> exifStream(std::span<const std::byte> chunk);

}  // namespace sorvik::sips
