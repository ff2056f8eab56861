#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace sorvik::codecs {

/// Builds headers of little-endian numbers.
class LittleEndianBytes {
public:
    LittleEndianBytes& u16(std::uint32_t value) { return append(value, 2); }
    LittleEndianBytes& u32(std::uint32_t value) { return append(value, 4); }
    LittleEndianBytes& zeros(std::size_t count) {
        bytes_.resize(bytes_.size() + count);
        return *this;
    }
    [[nodiscard]] const std::vector<std::byte>& bytes() const { return bytes_; }

private:
    LittleEndianBytes& append(std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i) {
            bytes_.push_back(static_cast<std::byte>(value >> (8 * i)));
        }
        return *this;
    }

    std::vector<std::byte> bytes_;
};

}  // namespace sorvik::codecs
