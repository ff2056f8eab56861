#include "imaging/sips/frame_lists.h"

#include <algorithm>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/completeness.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/riff_chunks.h"
#include "imaging/sips/tiff_directory.h"
#include "imaging/sips/upright.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;

/// Walks the blocks of a GIF. Past the end everything reads as 0.
class GifReader {
public:
    explicit GifReader(Bytes bytes) : reader_(bytes, std::endian::little) {}

    [[nodiscard]] bool atEnd() const { return at_ >= reader_.size(); }
    std::uint64_t byte() { return reader_.unsignedAt(at_++, 1); }
    std::uint64_t number() {
        at_ += 2;
        return reader_.u16(at_ - 2);
    }
    void skip(std::uint64_t count) { at_ += count; }
    /// The table of colours that packed flags announce.
    void skipTable(std::uint64_t flags) { skip((flags & 0x80) != 0 ? 3ULL << ((flags & 7) + 1) : 0); }
    /// Whether there were data, and the empty sub-block that ends them.
    bool skipSubBlocks() {
        bool data = false;
        while (!atEnd()) {
            const std::uint64_t length = byte();
            if (length == 0) {
                return data;
            }
            data = true;
            skip(length);
        }
        return false;
    }

private:
    ByteReader reader_;
    std::uint64_t at_ = 0;
};

/// True when the frame ends in the file.
bool readGifFrame(GifReader& reader, FrameList& list) {
    const std::uint64_t right = reader.number();
    const std::uint64_t down = reader.number();
    const std::uint64_t width = reader.number();
    const std::uint64_t height = reader.number();
    if (list.width == 0 || list.height == 0) {  // decoders then make the canvas as large as the first frame
        list.width = right + width;
        list.height = down + height;
    }
    ++list.frames;
    reader.skipTable(reader.byte());
    reader.skip(1);  // code size
    return reader.skipSubBlocks();
}

constexpr std::uint16_t widthTag = 256;
constexpr std::uint16_t heightTag = 257;

bool tiffPageIsWhole(Bytes bytes, const TiffDirectory& directory) {
    return !tiffPageIsCutOff(bytes, directory) && directory.nextPlace != 0 &&
           firstNumber(bytes, directory, widthTag) != 0 && firstNumber(bytes, directory, heightTag) != 0;
}

void describeFirstPage(Bytes bytes, const TiffDirectory& directory, FrameList& list) {
    list.width = firstNumber(bytes, directory, widthTag);
    list.height = firstNumber(bytes, directory, heightTag);
    list.orientation = orientationOf(bytes);
}

}  // namespace

FrameList gifFrames(Bytes bytes) {
    constexpr std::uint64_t signatureSize = 6;
    GifReader reader(bytes);
    reader.skip(signatureSize);
    FrameList list;
    list.width = reader.number();
    list.height = reader.number();
    const std::uint64_t flags = reader.byte();
    reader.skip(2);  // background, aspect ratio
    reader.skipTable(flags);
    bool whole = true;
    while (whole && !reader.atEnd()) {
        switch (reader.byte()) {
            case '!':
                reader.skip(1);  // label
                reader.skipSubBlocks();
                break;
            case ',':
                whole = readGifFrame(reader, list);
                break;
            case ';':
                list.whole = list.frames > 0;
                return list;
            case 0:  // some writers pad
                break;
            default:
                whole = false;
        }
    }
    return list;
}

FrameList webpFrames(Bytes bytes) {
    const RiffChunks file = riffChunksOf(bytes);
    FrameList list;
    list.whole = file.whole;
    bool pixels = false;
    for (const RiffChunk& chunk : file.chunks) {
        const ByteReader reader(chunk.data, std::endian::little);
        if (chunk.type == "VP8X") {
            list.width = reader.unsignedAt(4, 3) + 1;
            list.height = reader.unsignedAt(7, 3) + 1;
        } else if (chunk.type == "EXIF") {
            list.orientation = orientationOf(exifStream(chunk.data));
        } else if (chunk.type == "ANMF") {
            constexpr std::size_t frameHeader = 16;
            const RiffChunks parts = riffChunksIn(chunk.data, frameHeader);
            const auto isPicture = [](const RiffChunk& part) { return part.type == "VP8 " || part.type == "VP8L"; };
            list.whole = list.whole && parts.whole && std::ranges::any_of(parts.chunks, isPicture);
            ++list.frames;
        } else if (chunk.type == "VP8 " || chunk.type == "VP8L") {
            pixels = true;
        }
    }
    list.whole = list.whole && (pixels || list.frames > 0);
    list.frames = std::max<std::uint64_t>(list.frames, 1);
    if (const auto claimed = claimedSize(ContentKind::webp, bytes); claimed && list.width == 0) {
        list.width = claimed->width;
        list.height = claimed->height;
    }
    return list;
}

FrameList tiffPages(Bytes bytes) {
    FrameList list;
    TiffPages pages(bytes);
    if (pages.page() != nullptr) {
        describeFirstPage(bytes, *pages.page(), list);
    }
    list.whole = true;
    for (; pages.page() != nullptr; pages.advance()) {
        ++list.frames;
        list.whole = list.whole && tiffPageIsWhole(bytes, *pages.page());
    }
    list.whole = list.whole && !pages.isBroken();
    return list;
}

}  // namespace sorvik::sips
