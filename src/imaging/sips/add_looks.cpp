#include "imaging/sips/add_looks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <string_view>

#include "codecs/byte_sink.h"
#include "codecs/png_chunks.h"
#include "codecs/png_metadata.h"
#include "imaging/sips/byte_reader.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/riff_chunks.h"
#include "imaging/sips/tiff_directory.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;
using Buffer = std::vector<std::byte>;
using namespace std::string_view_literals;

[[noreturn]] void refuseDamage() { throw Failure(Status::failed, "damaged picture"); }

void append(Buffer& bytes, Bytes more) { bytes.insert(bytes.end(), more.begin(), more.end()); }
void append(Buffer& bytes, std::string_view text) { append(bytes, std::as_bytes(std::span(text))); }

void appendSegment(Buffer& jpeg, unsigned marker, std::string_view mark, Bytes content) {
    const std::size_t size = 2 + mark.size() + content.size();
    for (const std::size_t byte : {std::size_t{0xFF}, std::size_t{marker}, size >> 8, size & 0xFF}) {
        jpeg.push_back(std::byte(byte));
    }
    append(jpeg, mark);
    append(jpeg, content);
}

void appendProfileSegments(Buffer& jpeg, Bytes icc) {
    constexpr std::size_t largestPart = 65519;
    constexpr std::size_t mostParts = 255;
    const std::size_t count = (icc.size() + largestPart - 1) / largestPart;
    if (count > mostParts) {
        throw Failure(Status::failed, "the profile is too large for JPEG");
    }
    for (std::size_t i = 0; i < count; ++i) {
        std::string mark("ICC_PROFILE\0"sv);
        mark += static_cast<char>(i + 1);
        mark += static_cast<char>(count);
        const std::size_t start = i * largestPart;
        appendSegment(jpeg, 0xE2, mark, icc.subspan(start, std::min(largestPart, icc.size() - start)));
    }
}

/// Behind the start marker and the APP0 segments, which readers look for at the very beginning.
std::size_t endOfJfif(Bytes jpeg) {
    const ByteReader reader(jpeg, std::endian::big);
    std::size_t at = 2;
    while (reader.u16(at) == 0xFFE0) {
        at += 2 + std::size_t{reader.u16(at + 2)};
    }
    if (at >= jpeg.size()) {
        refuseDamage();
    }
    return at;
}

codecs::PixelLayout layoutOf(Bytes ihdr) {
    if (ihdr.size() < 13) {
        refuseDamage();
    }
    const ByteReader reader(ihdr, std::endian::big);
    const bool grey = (reader.unsignedAt(9, 1) & 2) == 0;
    return {reader.u32(0), reader.u32(4), grey ? 1 : 3, 8};
}

/// The numbers of a TIFF, in its byte order and with offsets of its size.
class TiffNumbers {
public:
    explicit TiffNumbers(const TiffDirectory& directory) : order_(directory.order), big_(directory.big) {}

    [[nodiscard]] unsigned offsetSize() const { return big_ ? 8 : 4; }
    [[nodiscard]] unsigned countSize() const { return big_ ? 8 : 2; }
    [[nodiscard]] unsigned entrySize() const { return big_ ? 20 : 12; }
    [[nodiscard]] std::uint64_t firstLink() const { return big_ ? 8 : 4; }
    [[nodiscard]] bool isBig() const { return big_; }

    void add(Buffer& bytes, std::uint64_t value, unsigned size) const {
        bytes.resize(bytes.size() + size);
        store(bytes, bytes.size() - size, value, size);
    }
    void store(Buffer& bytes, std::uint64_t place, std::uint64_t value, unsigned size) const {
        for (unsigned i = 0; i < size; ++i) {
            const unsigned shift = 8 * (order_ == std::endian::big ? size - 1 - i : i);
            bytes[static_cast<std::size_t>(place) + i] = std::byte(value >> shift & 0xFF);
        }
    }
    [[nodiscard]] std::uint64_t at(Bytes bytes, std::uint64_t place, unsigned size) const {
        return ByteReader(bytes, order_).unsignedAt(place, size);
    }

private:
    std::endian order_;
    bool big_;
};

struct NewEntry {
    std::uint16_t tag;
    std::uint16_t type;
    std::uint64_t count;
    std::uint64_t value;  ///< or where it lies
    unsigned valueSize;
};

/// What a page lacks, as entries in the order of their tags; the profile itself goes to the end of the file.
std::vector<NewEntry> entriesFor(const Looks& lacking, Buffer& tiff, const TiffNumbers& numbers) {
    std::vector<NewEntry> entries;
    if (lacking.orientation != 1) {
        entries.push_back({274, 3, 1, static_cast<std::uint64_t>(lacking.orientation), 2});
    }
    if (!lacking.icc.empty()) {
        tiff.resize(tiff.size() + tiff.size() % 2);
        entries.push_back({34675, 7, lacking.icc.size(), tiff.size(), numbers.offsetSize()});
        append(tiff, lacking.icc);
    }
    return entries;
}

void appendEntry(Buffer& tiff, const NewEntry& entry, const TiffNumbers& numbers) {
    numbers.add(tiff, entry.tag, 2);
    numbers.add(tiff, entry.type, 2);
    numbers.add(tiff, entry.count, numbers.offsetSize());
    numbers.add(tiff, entry.value, entry.valueSize);
    tiff.resize(tiff.size() + numbers.offsetSize() - entry.valueSize);
}

/// Appends the directory at `start` anew with what it lacks, and makes `link` point to it. Gives the place
/// of its own link.
std::uint64_t renewDirectory(Buffer& tiff, std::uint64_t start, std::uint64_t link, const Looks& lacking,
                             const TiffNumbers& numbers) {
    const std::uint64_t count = numbers.at(tiff, start, numbers.countSize());
    const std::uint64_t end = start + numbers.countSize() + count * numbers.entrySize();
    const Buffer old(tiff.begin() + static_cast<std::ptrdiff_t>(start + numbers.countSize()),
                     tiff.begin() + static_cast<std::ptrdiff_t>(end + numbers.offsetSize()));
    const std::vector<NewEntry> added = entriesFor(lacking, tiff, numbers);
    tiff.resize(tiff.size() + tiff.size() % 2);
    numbers.store(tiff, link, tiff.size(), numbers.offsetSize());
    numbers.add(tiff, count + added.size(), numbers.countSize());
    auto next = added.begin();
    for (std::uint64_t i = 0; i < count; ++i) {
        const Bytes entry = Bytes(old).subspan(static_cast<std::size_t>(i) * numbers.entrySize(), numbers.entrySize());
        for (; next != added.end() && next->tag < numbers.at(entry, 0, 2); ++next) {
            appendEntry(tiff, *next, numbers);
        }
        append(tiff, entry);
    }
    std::for_each(next, added.end(), [&](const NewEntry& entry) { appendEntry(tiff, entry, numbers); });
    append(tiff, Bytes(old).last(numbers.offsetSize()));
    return tiff.size() - numbers.offsetSize();
}

/// The bytes of an animation that hold its rounds and, frame by frame, its times.
std::vector<Bytes> timesIn(Bytes webp) {
    struct Field {
        std::string_view chunk;
        std::size_t offset;
        std::size_t size;
    };
    constexpr std::array fields{Field{"ANIM", 4, 2}, Field{"ANMF", 12, 3}};
    std::vector<Bytes> times;
    for (const RiffChunk& chunk : riffChunksOf(webp).chunks) {
        for (const Field& field : fields) {
            if (chunk.type == field.chunk && chunk.data.size() >= field.offset + field.size) {
                times.push_back(chunk.data.subspan(field.offset, field.size));
            }
        }
    }
    return times;
}

}  // namespace

Buffer jpegWithLooks(Bytes jpeg, const Looks& lacking) {
    const std::size_t at = endOfJfif(jpeg);
    Buffer result(jpeg.begin(), jpeg.begin() + static_cast<std::ptrdiff_t>(at));
    if (lacking.orientation != 1) {
        appendSegment(result, 0xE1, "Exif\0\0"sv, exifOfOrientation(lacking.orientation));
    }
    appendProfileSegments(result, lacking.icc);
    append(result, jpeg.subspan(at));
    return result;
}

Buffer pngWithLooks(Bytes png, const Looks& lacking) {
    const auto header = codecs::readChunk(png, codecs::pngSignature.size());
    if (!header || header->type != codecs::chunkType("IHDR")) {
        refuseDamage();
    }
    codecs::PictureMetadata added;
    added.icc = lacking.icc;
    added.exif = lacking.orientation == 1 ? Buffer() : exifOfOrientation(lacking.orientation);
    codecs::BufferSink result;
    result.write(png.first(header->end));
    codecs::writePngMetadata(result, layoutOf(header->data), added, true);
    result.write(lacking.calibration);
    std::size_t at = header->end;
    while (const auto chunk = codecs::readChunk(png, at)) {
        if (chunk->type == codecs::chunkType("IDAT")) {
            break;
        }
        const bool contradicts = chunk->type == codecs::chunkType("sRGB") || chunk->type == codecs::chunkType("gAMA") ||
                                 chunk->type == codecs::chunkType("cHRM");
        const bool colorsAdded = !lacking.icc.empty() || !lacking.calibration.empty();
        if (!colorsAdded || !contradicts) {
            result.write(png.subspan(at, chunk->end - at));
        }
        at = chunk->end;
    }
    result.write(png.subspan(at));
    return result.bytes();
}

Buffer webpWithTimesOf(Bytes webp, Bytes original) {
    const std::vector<Bytes> times = timesIn(original);
    const std::vector<Bytes> places = timesIn(webp);
    const bool alike = std::ranges::equal(times, places, {}, &Bytes::size, &Bytes::size);
    if (!alike || std::ranges::equal(times, places, std::ranges::equal)) {
        return {};
    }
    Buffer timed(webp.begin(), webp.end());
    for (std::size_t index = 0; index < times.size(); ++index) {
        std::ranges::copy(times[index], timed.begin() + (places[index].data() - webp.data()));
    }
    return timed;
}

Buffer tiffWithLooks(Bytes tiff, Bytes original) {
    TiffPages pages(tiff);
    if (pages.page() == nullptr) {
        refuseDamage();
    }
    const TiffNumbers numbers(*pages.page());
    Buffer grown;
    std::uint64_t link = numbers.firstLink();
    TiffPages looks(original);
    for (; pages.page() != nullptr && looks.page() != nullptr; pages.advance(), looks.advance()) {
        const TiffDirectory& page = *pages.page();
        const Looks lacking = lackingLooks(tiffLooks(original, *looks.page()), tiffLooks(tiff, page));
        if (lacksAny(lacking) && page.nextPlace != 0) {
            if (grown.empty()) {
                grown.assign(tiff.begin(), tiff.end());
            }
            link = renewDirectory(grown, pages.start(), link, lacking, numbers);
            if (grown.size() / 2 > tiff.size() + original.size()) {
                refuseDamage();  // pages that share one huge profile
            }
        } else {
            link = page.nextPlace;
        }
    }
    if (!numbers.isBig() && grown.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw Failure(Status::tooLarge, "the picture is too large for TIFF");
    }
    return grown;
}

}  // namespace sorvik::sips
