#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace sorvik::codecs {

/// Bytes in memory that are not cleared first: of a generous reservation only the pages that are
/// written to cost anything.
class ByteBlock {
public:
    ByteBlock() = default;
    explicit ByteBlock(std::size_t capacity)
        : data_(std::make_unique_for_overwrite<std::byte[]>(capacity)), capacity_(capacity) {}

    [[nodiscard]] std::byte* data() { return data_.get(); }
    [[nodiscard]] std::size_t capacity() const { return capacity_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return {data_.get(), size_}; }

    /// How many bytes from the start are valid; at most the capacity.
    void setSize(std::size_t size) { size_ = size; }

private:
    std::unique_ptr<std::byte[]> data_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
};

}  // namespace sorvik::codecs
