#include "imaging/sips/riff_chunks.h"

#include <algorithm>

#include "imaging/sips/byte_reader.h"

namespace sorvik::sips {

RiffChunks riffChunksIn(std::span<const std::byte> bytes, std::size_t start) {
    constexpr std::size_t header = 8;
    const ByteReader reader(bytes, std::endian::little);
    RiffChunks found;
    std::size_t at = start;
    while (at < bytes.size()) {
        const std::size_t size = reader.u32(at + 4);
        if (bytes.size() - at < header || bytes.size() - at - header < size) {
            return found;
        }
        found.chunks.push_back({textOf(bytes.subspan(at, 4)), bytes.subspan(at + header, size)});
        at += header + size + size % 2;
    }
    found.whole = !found.chunks.empty();
    return found;
}

RiffChunks riffChunksOf(std::span<const std::byte> file) {
    constexpr std::size_t header = 12;
    constexpr std::size_t sizeEnd = 8;
    const std::size_t claimed = sizeEnd + ByteReader(file, std::endian::little).u32(4);
    RiffChunks found = riffChunksIn(file.first(std::min(claimed, file.size())), header);
    found.whole = found.whole && claimed <= file.size();
    return found;
}

std::span<const std::byte> exifStream(std::span<const std::byte> chunk) {
    constexpr std::string_view mark("Exif\0\0", 6);
    return holdsAt(chunk, 0, mark) ? chunk.subspan(mark.size()) : chunk;
}

}  // namespace sorvik::sips
