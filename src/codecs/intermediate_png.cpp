#include "codecs/intermediate_png.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

#include "codecs/intermediate_format.h"
#include "codecs/png_metadata.h"
#include "codecs/samples.h"

namespace sorvik::codecs {
namespace {

using namespace intermediate;

// A whole file in memory, read only.
class Mapping {
public:
    explicit Mapping(int fileDescriptor) {
        struct stat status {};
        if (::fstat(fileDescriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) {
            return;
        }
        const auto size = static_cast<std::size_t>(status.st_size);
        void* const start = ::mmap(nullptr, size, PROT_READ, MAP_SHARED | MAP_POPULATE, fileDescriptor, 0);
        if (start != MAP_FAILED) {
            bytes_ = {static_cast<const std::byte*>(start), size};
        }
    }
    Mapping(Mapping&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
    Mapping& operator=(Mapping&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        return *this;
    }
    ~Mapping() {
        if (!bytes_.empty()) {
            ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
        }
    }
    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

private:
    std::span<const std::byte> bytes_;
};

struct Contents {
    PixelLayout layout;
    PictureMetadata metadata;
    std::size_t blocksStart = 0;  ///< file offset of the chunk of the first block
};

bool isChunk(const std::optional<ChunkView>& chunk, ChunkType type, std::span<const std::byte> data) {
    return chunk && chunk->type == type && std::ranges::equal(chunk->data, data);
}

// Everything before the blocks.
std::optional<Contents> readHead(std::span<const std::byte> file) {
    if (file.size() < pngSignature.size() || !std::ranges::equal(file.first(pngSignature.size()), pngSignature)) {
        return std::nullopt;
    }
    const auto header = readChunk(file, pngSignature.size());
    const auto layout = header && header->type == chunkType("IHDR") ? readPngHeader(header->data) : std::nullopt;
    const auto mark = layout ? readChunk(file, header->end) : std::nullopt;
    if (!isChunk(mark, markChunk, markData)) {
        return std::nullopt;
    }
    Contents contents{*layout, {}, 0};
    auto chunk = readChunk(file, mark->end);
    while (chunk && chunk->type != chunkType("IDAT")) {
        if (!readPngMetadata(*chunk, contents.metadata)) {
            return std::nullopt;
        }
        chunk = readChunk(file, chunk->end);
    }
    if (!isChunk(chunk, chunkType("IDAT"), zlibHeader)) {
        return std::nullopt;
    }
    contents.blocksStart = chunk->end;
    return contents;
}

// True when the chunk holds one stored block of so many bytes.
bool isBlock(const std::optional<ChunkView>& chunk, std::size_t size, bool last) {
    return chunk && chunk->type == chunkType("IDAT") && chunk->data.size() == blockHeaderSize + size &&
           std::ranges::equal(chunk->data.first(blockHeaderSize), blockHeader(size, last));
}

// True when the blocks lie where arithmetic looks for them and the file ends as it has to. Every CRC is
// checked on the way: it costs less than one read of the file.
bool blocksAreWhole(std::span<const std::byte> file, const Contents& contents) {
    const std::size_t rowSize = contents.layout.rowBytes() + 1;
    if (contents.layout.height > file.size() / rowSize) {
        return false;
    }
    std::size_t offset = contents.blocksStart;
    for (std::size_t left = rowSize * contents.layout.height; left > 0;) {
        const std::size_t size = std::min(left, blockCapacity);
        left -= size;
        const auto block = readChunk(file, offset);
        if (!isBlock(block, size, left == 0)) {
            return false;
        }
        offset = block->end;
    }
    const auto checksum = readChunk(file, offset);
    const auto end = checksum ? readChunk(file, checksum->end) : std::nullopt;
    return checksum && checksum->type == chunkType("IDAT") && checksum->data.size() == 4 &&
           isChunk(end, chunkType("IEND"), {});
}

class MappedPng final : public IntermediatePng {
public:
    MappedPng(Mapping mapping, Contents contents) : mapping_(std::move(mapping)), contents_(std::move(contents)) {}

    [[nodiscard]] const PixelLayout& layout() const override { return contents_.layout; }
    [[nodiscard]] const PictureMetadata& metadata() const override { return contents_.metadata; }

    void readRow(std::uint32_t y, std::byte* destination) const override {
        const std::size_t rowBytes = contents_.layout.rowBytes();
        copy(rowStart(y) + 1, rowBytes, destination);
        if (contents_.layout.bitsPerSample == 16) {
            copySwapped16(destination, destination, rowBytes / 2);
        }
    }

    [[nodiscard]] bool isUnfiltered() const {
        for (std::uint32_t y = 0; y < contents_.layout.height; ++y) {
            std::byte filter{};
            copy(rowStart(y), 1, &filter);
            if (filter != std::byte{0}) {
                return false;
            }
        }
        return true;
    }

private:
    // Offsets are those of the stream that the blocks hold.
    [[nodiscard]] std::size_t rowStart(std::uint32_t y) const { return y * (contents_.layout.rowBytes() + 1); }

    void copy(std::size_t offset, std::size_t size, std::byte* destination) const {
        const std::byte* const blocks = mapping_.bytes().data() + contents_.blocksStart;
        while (size > 0) {
            const std::size_t inBlock = offset % blockCapacity;
            const std::size_t count = std::min(size, blockCapacity - inBlock);
            const std::byte* const block = blocks + offset / blockCapacity * fullChunkSize;
            std::memcpy(destination, block + chunkHeaderSize + blockHeaderSize + inBlock, count);
            destination += count;
            offset += count;
            size -= count;
        }
    }

    Mapping mapping_;
    Contents contents_;
};

}  // namespace

std::unique_ptr<IntermediatePng> IntermediatePng::open(int fileDescriptor) {
    Mapping mapping(fileDescriptor);
    auto contents = readHead(mapping.bytes());
    if (!contents || !blocksAreWhole(mapping.bytes(), *contents)) {
        return nullptr;
    }
    auto picture = std::make_unique<MappedPng>(std::move(mapping), *std::move(contents));
    return picture->isUnfiltered() ? std::move(picture) : nullptr;
}

}  // namespace sorvik::codecs
