#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace sorvik::codecs {

/// Gives colours numbers in order of appearance, up to 256.
class ColourTable {
public:
    static constexpr std::size_t largest = 256;

    /// `limit` is at most `largest`.
    explicit ColourTable(std::size_t limit = largest) : limit_(limit) {}

    /// The colour's number; absent when it would be one more than the limit.
    [[nodiscard]] std::optional<std::uint8_t> indexOf(std::uint32_t colour);
    [[nodiscard]] std::span<const std::uint32_t> colours() const { return colours_; }

private:
    static constexpr std::size_t slotCount = 1024;

    std::size_t limit_;
    std::vector<std::uint32_t> colours_;
    std::array<std::uint16_t, slotCount> slots_{};  ///< open-addressed hash table of places in colours_, plus 1
};

}  // namespace sorvik::codecs
