#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace sorvik::sips {

/// Integers at any place of a file in either byte order. A place outside the file reads as 0.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes, std::endian order) : bytes_(bytes), order_(order) {}

    [[nodiscard]] std::uint64_t unsignedAt(std::uint64_t offset, unsigned size) const {
        if (offset > bytes_.size() || bytes_.size() - offset < size) {
            return 0;
        }
        std::uint64_t value = 0;
        for (unsigned i = 0; i < size; ++i) {
            const unsigned at = order_ == std::endian::big ? i : size - 1 - i;
            value = value << 8 | std::to_integer<std::uint64_t>(bytes_[static_cast<std::size_t>(offset) + at]);
        }
        return value;
    }
    [[nodiscard]] std::uint16_t u16(std::uint64_t offset) const {
        return static_cast<std::uint16_t>(unsignedAt(offset, 2));
    }
    [[nodiscard]] std::uint32_t u32(std::uint64_t offset) const {
        return static_cast<std::uint32_t>(unsignedAt(offset, 4));
    }
    [[nodiscard]] std::uint64_t u64(std::uint64_t offset) const { return unsignedAt(offset, 8); }
    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

private:
    std::span<const std::byte> bytes_;
    std::endian order_;
};

/// Whether `bytes` hold `text` at `offset`.
[[nodiscard]] inline bool holdsAt(std::span<const std::byte> bytes, std::size_t offset, std::string_view text) {
    if (offset > bytes.size() || bytes.size() - offset < text.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (std::to_integer<unsigned char>(bytes[offset + i]) != static_cast<unsigned char>(text[i])) {
            return false;
        }
    }
    return true;
}

/// The bytes as text, for searching.
[[nodiscard]] inline std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace sorvik::sips
