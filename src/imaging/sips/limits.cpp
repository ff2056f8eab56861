#include "imaging/sips/limits.h"

#include <algorithm>
#include <array>
#include <string>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/failure.h"

namespace sorvik::sips {

namespace {

/// The decoder allocates for the screen, or for the first frame where that reaches beyond it.
DecodedSize gifSize(std::span<const std::byte> bytes) {
    const ByteReader reader(bytes, std::endian::little);
    DecodedSize size{reader.u16(6), reader.u16(8), 4};
    constexpr std::uint64_t screenEnd = 13;
    const std::uint64_t flags = reader.unsignedAt(10, 1);
    std::uint64_t at = screenEnd + ((flags & 0x80) != 0 ? 3ULL << ((flags & 7) + 1) : 0);
    while (reader.unsignedAt(at, 1) == '!') {  // extensions: a label and sub-blocks up to an empty one
        at += 2;
        while (const std::uint64_t length = reader.unsignedAt(at, 1)) {
            at += 1 + length;
        }
        ++at;
    }
    if (reader.unsignedAt(at, 1) == ',') {
        size.width = std::max<std::uint64_t>(size.width, reader.u16(at + 1) + std::uint64_t{reader.u16(at + 5)});
        size.height = std::max<std::uint64_t>(size.height, reader.u16(at + 3) + std::uint64_t{reader.u16(at + 7)});
    }
    return size;
}

DecodedSize bmpSize(std::span<const std::byte> bytes) {
    const ByteReader reader(bytes, std::endian::little);
    constexpr std::uint32_t coreHeaderSize = 12;
    if (reader.u32(14) == coreHeaderSize) {
        return {reader.u16(18), reader.u16(20), 4};
    }
    const std::uint32_t height = reader.u32(22);
    const bool topDown = height > 0x7FFFFFFF;
    return {reader.u32(18), topDown ? std::uint32_t{0} - height : height, 4};
}

DecodedSize psdSize(std::span<const std::byte> bytes) {
    const ByteReader reader(bytes, std::endian::big);
    return {reader.u32(18), reader.u32(14), reader.u16(22) > 8 ? 8ULL : 4ULL};
}

DecodedSize pngSize(std::span<const std::byte> bytes) {
    const ByteReader reader(bytes, std::endian::big);
    constexpr std::array<std::uint64_t, 7> channels{1, 4, 3, 4, 2, 4, 4};  // by colour type; a palette may have alpha
    const std::uint64_t type = std::min<std::uint64_t>(reader.unsignedAt(25, 1), channels.size() - 1);
    return {reader.u32(16), reader.u32(20), channels[type] * (reader.unsignedAt(24, 1) > 8 ? 2 : 1)};
}

DecodedSize webpSize(std::span<const std::byte> bytes) {
    const ByteReader reader(bytes, std::endian::little);
    if (holdsAt(bytes, 12, "VP8X")) {
        return {reader.unsignedAt(24, 3) + 1, reader.unsignedAt(27, 3) + 1, 4};
    }
    if (holdsAt(bytes, 12, "VP8L")) {
        const std::uint32_t sides = reader.u32(21);
        return {(sides & 0x3FFF) + 1, (sides >> 14 & 0x3FFF) + 1, 4};
    }
    return {reader.u16(26) & 0x3FFFU, reader.u16(28) & 0x3FFFU, 4};
}

}  // namespace

std::optional<DecodedSize> claimedSize(ContentKind kind, std::span<const std::byte> bytes) {
    switch (kind) {
        case ContentKind::gif:
            return gifSize(bytes);
        case ContentKind::bmp:
            return bmpSize(bytes);
        case ContentKind::psd:
            return psdSize(bytes);
        case ContentKind::png:
            return pngSize(bytes);
        case ContentKind::webp:
            return webpSize(bytes);
        default:
            return std::nullopt;
    }
}

void requireDecodable(const DecodedSize& size, Decoding decoding) {
    const std::uint64_t limit = decoding == Decoding::whole ? maximumWholeBytes : maximumStreamedBytes;
    const bool sidesFit = size.width <= maximumSide && size.height <= maximumSide;
    if (!sidesFit || size.width * size.height * size.bytesPerPixel > limit) {
        throw Failure(Status::tooLarge, "the picture is too large: " + std::to_string(size.width) + " x " +
                                            std::to_string(size.height) + " pixels");
    }
}

}  // namespace sorvik::sips
