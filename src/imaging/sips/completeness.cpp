#include "imaging/sips/completeness.h"

#include <algorithm>
#include <array>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/tiff_directory.h"

namespace sorvik::sips {

namespace {

bool pngIsCutOff(std::span<const std::byte> bytes) {
    const ByteReader reader(bytes, std::endian::big);
    constexpr std::uint64_t signatureSize = 8;
    constexpr std::uint64_t chunkOverhead = 12;  // length, type, checksum
    std::uint64_t at = signatureSize;
    while (bytes.size() - at >= chunkOverhead) {
        if (holdsAt(bytes, static_cast<std::size_t>(at) + 4, "IEND")) {
            return false;
        }
        const std::uint64_t size = chunkOverhead + reader.u32(at);
        if (size > bytes.size() - at) {
            break;
        }
        at += size;
    }
    return true;
}

/// The pairs of offsets and byte counts of strips or tiles.
bool piecesReachBeyond(std::span<const std::byte> bytes, const TiffDirectory& directory, std::uint16_t offsetsTag,
                       std::uint16_t countsTag) {
    const TiffEntry* offsets = directory.find(offsetsTag);
    const TiffEntry* counts = directory.find(countsTag);
    if (offsets == nullptr || counts == nullptr) {
        return false;
    }
    const ByteReader reader(bytes, directory.order);
    const auto valueOf = [&](const TiffEntry& entry, std::uint64_t i) {
        const std::uint64_t size = entry.byteCount / std::max<std::uint64_t>(entry.count, 1);
        return reader.unsignedAt(entry.valuePlace + i * size, static_cast<unsigned>(size));
    };
    for (std::uint64_t i = 0; i < std::min(offsets->count, counts->count); ++i) {
        const std::uint64_t place = valueOf(*offsets, i);
        if (place > bytes.size() || bytes.size() - place < valueOf(*counts, i)) {
            return true;
        }
    }
    return false;
}

/// Without one of these the pixels can't be understood: offsets and sizes of strips and tiles, palette,
/// JPEG tables, profile.
constexpr std::array<std::uint16_t, 8> neededTags = {258, 273, 279, 320, 324, 325, 347, 34675};

bool tiffIsCutOff(std::span<const std::byte> bytes) {
    const auto directory = readTiffDirectory(bytes);
    return !directory || tiffPageIsCutOff(bytes, *directory);
}

/// Adobe Photoshop File Formats: header, three sections with their lengths, then the merged picture.
bool psdIsCutOff(std::span<const std::byte> bytes) {
    const ByteReader reader(bytes, std::endian::big);
    const std::uint64_t rows = std::uint64_t{reader.u16(12)} * reader.u32(14);
    const std::uint64_t bitsPerRow = std::uint64_t{reader.u32(18)} * reader.u16(22);
    std::uint64_t at = 26;
    for (int section = 0; section < 3; ++section) {
        at += 4 + std::uint64_t{reader.u32(at)};
    }
    const std::uint16_t compression = reader.u16(at);
    at += 2;
    if (at > bytes.size()) {
        return true;
    }
    std::uint64_t needed = 0;
    if (compression == 0) {
        needed = rows * ((bitsPerRow + 7) / 8);
    } else if (compression == 1) {  // the packed size of each row comes first
        needed = rows * 2;
        for (std::uint64_t row = 0; row < rows && needed <= bytes.size(); ++row) {
            needed += reader.u16(at + row * 2);
        }
    }
    return bytes.size() - at < needed;
}

constexpr unsigned startOfScan = 0xDA;
constexpr unsigned endOfImage = 0xD9;

/// The place of the marker behind coded data, where a 0xFF is stuffed with 0 or begins a restart marker.
std::size_t endOfScan(std::string_view jpeg, std::size_t at) {
    while ((at = jpeg.find('\xFF', at)) != std::string_view::npos && at + 1 < jpeg.size()) {
        const auto next = static_cast<unsigned char>(jpeg[at + 1]);
        const bool restart = next >= 0xD0 && next <= 0xD7;
        if (next != 0 && !restart) {
            return at;
        }
        at += 2;
    }
    return jpeg.size();
}

}  // namespace

bool jpegMarkersReachEnd(std::span<const std::byte> jpeg) {
    const ByteReader reader(jpeg, std::endian::big);
    bool scanSeen = false;
    std::size_t at = 2;
    while (at < jpeg.size() && reader.unsignedAt(at, 1) == 0xFF) {
        const auto marker = static_cast<unsigned>(reader.unsignedAt(at + 1, 1));
        if (marker == endOfImage) {
            return scanSeen;
        }
        if (marker == 0xFF) {  // fill
            ++at;
            continue;
        }
        at += 2 + std::max<std::size_t>(reader.u16(at + 2), 2);
        if (marker == startOfScan) {
            scanSeen = true;
            at = endOfScan(textOf(jpeg), at);
        }
    }
    return false;
}

bool tiffPageIsCutOff(std::span<const std::byte> bytes, const TiffDirectory& directory) {
    return std::ranges::find_first_of(directory.cutOffTags, neededTags) != directory.cutOffTags.end() ||
           piecesReachBeyond(bytes, directory, 273, 279) || piecesReachBeyond(bytes, directory, 324, 325);
}

bool isCutOff(ContentKind kind, std::span<const std::byte> bytes) {
    switch (kind) {
        case ContentKind::png:
            return pngIsCutOff(bytes);
        case ContentKind::tiff:
            return tiffIsCutOff(bytes);
        case ContentKind::psd:
            return psdIsCutOff(bytes);
        default:
            return false;
    }
}

}  // namespace sorvik::sips
