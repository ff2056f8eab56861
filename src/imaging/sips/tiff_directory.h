#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace sorvik::sips {

/// One entry of a directory of a TIFF stream (TIFF 6.0, section 2); EXIF blocks are such streams.
struct TiffEntry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint64_t count = 0;
    std::uint64_t place = 0;       ///< of the entry itself, from the start of the stream
    std::uint64_t valuePlace = 0;  ///< of the first value, inside the entry or elsewhere in the stream
    std::uint64_t byteCount = 0;   ///< of all values; they lie within the stream
};

/// A directory of a TIFF stream.
struct TiffDirectory {
    std::endian order = std::endian::little;
    bool big = false;                       ///< BigTIFF
    std::vector<TiffEntry> entries;         ///< those whose type is known and whose values lie in the stream
    std::vector<std::uint16_t> cutOffTags;  ///< of the entries left out
    std::uint64_t nextPlace = 0;            ///< where the offset of the next directory is stored; 0 when cut off

    [[nodiscard]] const TiffEntry* find(std::uint16_t tag) const;
};

/// Absent when `stream` doesn't begin as a TIFF or its first directory lies outside.
[[nodiscard]] std::optional<TiffDirectory> readTiffDirectory(std::span<const std::byte> stream);

/// Another directory of the same stream, for example the one an EXIF pointer names.
[[nodiscard]] std::optional<TiffDirectory> readTiffDirectoryAt(std::span<const std::byte> stream, std::endian order,
                                                               bool big, std::uint64_t start);

/// The first value of an entry of a whole-number type, or 0.
[[nodiscard]] std::uint64_t firstNumber(std::span<const std::byte> stream, const TiffDirectory& directory,
                                        std::uint16_t tag);

/// Walks the directories of a stream, page by page. The work ends even when they lead back into themselves,
/// or share their bytes so that a small file would hold endlessly many entries.
class TiffPages {
public:
    /// `stream` must outlive the walk.
    explicit TiffPages(std::span<const std::byte> stream);

    /// Null behind the last page.
    [[nodiscard]] const TiffDirectory* page() const { return page_ ? &*page_ : nullptr; }
    /// Where the page's directory lies.
    [[nodiscard]] std::uint64_t start() const { return start_; }
    void advance();
    /// Whether the walk ended before the list of pages does.
    [[nodiscard]] bool isBroken() const { return broken_; }

private:
    void accept(std::optional<TiffDirectory> page);

    std::span<const std::byte> stream_;
    std::optional<TiffDirectory> page_;
    std::uint64_t start_ = 0;
    std::uint64_t bytesSeen_ = 0;
    bool broken_ = false;
};

}  // namespace sorvik::sips
