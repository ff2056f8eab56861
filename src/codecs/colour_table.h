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
    [[nodiscard]] std::optional<std::uint8_t> indexOf(std::uint32_t colour) {
        std::size_t slot = slotOf(colour);
        while (slots_[slot].next != 0 && slots_[slot].colour != colour) {
            slot = (slot + 1) % slotCount;
        }
        if (slots_[slot].next == 0) {
            if (colours_.size() == limit_) {
                return std::nullopt;
            }
            colours_.push_back(colour);
            slots_[slot] = {colour, static_cast<std::uint32_t>(colours_.size())};
        }
        return static_cast<std::uint8_t>(slots_[slot].next - 1);
    }
    [[nodiscard]] std::span<const std::uint32_t> colours() const { return colours_; }

private:
    struct Slot {
        std::uint32_t colour = 0;
        std::uint32_t next = 0;  ///< the number after the colour's; 0 in an empty slot
    };
    static constexpr std::size_t slotCount = 1024;

    [[nodiscard]] static std::size_t slotOf(std::uint32_t colour) {
        static_assert(slotCount == std::size_t{1} << (32 - 22));
        return (colour * 2654435769U) >> 22U;  // Fibonacci hashing to 10 bits
    }

    std::size_t limit_;
    std::vector<std::uint32_t> colours_;
    std::array<Slot, slotCount> slots_{};  ///< an open-addressed hash table
};

}  // namespace sorvik::codecs
