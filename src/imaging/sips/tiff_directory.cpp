#include "imaging/sips/tiff_directory.h"

#include <algorithm>
#include <array>

#include "imaging/sips/byte_reader.h"

namespace sorvik::sips {

namespace {

/// Bytes a value, by TIFF type; 0 for numbers that are no type.
constexpr std::array<unsigned, 19> typeSizes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};

/// The two shapes that a directory has.
struct Shape {
    unsigned countSize;  ///< of the number of entries
    unsigned entrySize;
    unsigned offsetSize;  ///< of value counts and offsets
};

constexpr Shape classicShape = {2, 12, 4};
constexpr Shape bigShape = {8, 20, 8};

std::optional<TiffEntry> readEntry(const ByteReader& reader, const Shape& shape, std::uint64_t place) {
    TiffEntry entry;
    entry.place = place;
    entry.tag = reader.u16(place);
    entry.type = reader.u16(place + 2);
    entry.count = reader.unsignedAt(place + 4, shape.offsetSize);
    const unsigned typeSize = entry.type < typeSizes.size() ? typeSizes[entry.type] : 0;
    if (typeSize == 0 || entry.count > reader.size() / typeSize) {
        return std::nullopt;
    }
    entry.byteCount = entry.count * typeSize;
    const std::uint64_t field = place + 4 + shape.offsetSize;
    entry.valuePlace = entry.byteCount <= shape.offsetSize ? field : reader.unsignedAt(field, shape.offsetSize);
    if (entry.valuePlace > reader.size() || reader.size() - entry.valuePlace < entry.byteCount) {
        return std::nullopt;
    }
    return entry;
}

}  // namespace

const TiffEntry* TiffDirectory::find(std::uint16_t tag) const {
    const auto found = std::ranges::find(entries, tag, &TiffEntry::tag);
    return found == entries.end() ? nullptr : &*found;
}

std::optional<TiffDirectory> readTiffDirectory(std::span<const std::byte> stream) {
    const std::endian order = holdsAt(stream, 0, "MM") ? std::endian::big : std::endian::little;
    if (order == std::endian::little && !holdsAt(stream, 0, "II")) {
        return std::nullopt;
    }
    const ByteReader reader(stream, order);
    switch (reader.u16(2)) {
        case 42:
            return readTiffDirectoryAt(stream, order, false, reader.u32(4));
        case 43:
            return readTiffDirectoryAt(stream, order, true, reader.u64(8));
        default:
            return std::nullopt;
    }
}

std::optional<TiffDirectory> readTiffDirectoryAt(std::span<const std::byte> stream, std::endian order, bool big,
                                                 std::uint64_t start) {
    const Shape& shape = big ? bigShape : classicShape;
    if (start < 8 || start > stream.size() || stream.size() - start < shape.countSize) {
        return std::nullopt;
    }
    const ByteReader reader(stream, order);
    TiffDirectory directory{order, big, {}, {}, 0};
    const std::uint64_t room = (stream.size() - start - shape.countSize) / shape.entrySize;
    const std::uint64_t count = reader.unsignedAt(start, shape.countSize);
    for (std::uint64_t i = 0; i < std::min<std::uint64_t>({count, room, 65535}); ++i) {
        const std::uint64_t place = start + shape.countSize + i * shape.entrySize;
        if (const auto entry = readEntry(reader, shape, place)) {
            directory.entries.push_back(*entry);
        } else {
            directory.cutOffTags.push_back(reader.u16(place));
        }
    }
    const std::uint64_t end = start + shape.countSize + std::min(count, room) * shape.entrySize;
    directory.nextPlace = count <= room && stream.size() - end >= shape.offsetSize ? end : 0;
    return directory;
}

std::uint64_t firstNumber(std::span<const std::byte> stream, const TiffDirectory& directory, std::uint16_t tag) {
    constexpr std::array<unsigned, 5> wholeNumberSizes = {0, 1, 0, 2, 4};  // BYTE, SHORT, LONG
    const TiffEntry* entry = directory.find(tag);
    if (entry == nullptr || entry->type >= wholeNumberSizes.size() || wholeNumberSizes[entry->type] == 0 ||
        entry->count == 0) {
        return 0;
    }
    return ByteReader(stream, directory.order).unsignedAt(entry->valuePlace, wholeNumberSizes[entry->type]);
}

TiffPages::TiffPages(std::span<const std::byte> stream) : stream_(stream) {
    auto first = readTiffDirectory(stream);
    if (first) {
        const ByteReader reader(stream, first->order);
        start_ = first->big ? reader.u64(8) : reader.u32(4);
    }
    accept(std::move(first));
}

void TiffPages::advance() {
    const bool big = page_->big;
    const std::endian order = page_->order;
    const std::uint64_t next = ByteReader(stream_, order).unsignedAt(page_->nextPlace, big ? 8 : 4);
    if (page_->nextPlace != 0 && next == 0) {
        page_.reset();
        return;
    }
    start_ = next;
    accept(page_->nextPlace == 0 ? std::nullopt : readTiffDirectoryAt(stream_, order, big, next));
}

void TiffPages::accept(std::optional<TiffDirectory> page) {
    constexpr std::uint64_t smallestDirectory = 6;
    constexpr std::uint64_t smallestEntry = 12;
    page_ = std::move(page);
    if (page_) {
        // What is honest lies side by side in the file, and so do the strips that a page counts.
        bytesSeen_ += smallestDirectory + smallestEntry * (page_->entries.size() + page_->cutOffTags.size());
        for (const std::uint16_t offsetsTag : {std::uint16_t{273}, std::uint16_t{324}}) {
            const TiffEntry* offsets = page_->find(offsetsTag);
            bytesSeen_ += offsets != nullptr && offsets->count > 1 ? offsets->byteCount : 0;
        }
    }
    if (!page_ || bytesSeen_ > stream_.size()) {
        page_.reset();
        broken_ = true;
    }
}

}  // namespace sorvik::sips
