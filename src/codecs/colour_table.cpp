#include "codecs/colour_table.h"

namespace sorvik::codecs {

std::optional<std::uint8_t> ColourTable::indexOf(std::uint32_t colour) {
    static_assert(slotCount == std::size_t{1} << (32 - 22));
    std::size_t slot = (colour * 2654435769U) >> 22U;  // Fibonacci hashing to 10 bits
    while (slots_[slot] != 0 && colours_[slots_[slot] - 1U] != colour) {
        slot = (slot + 1) % slotCount;
    }
    if (slots_[slot] == 0) {
        if (colours_.size() == limit_) {
            return std::nullopt;
        }
        colours_.push_back(colour);
        slots_[slot] = static_cast<std::uint16_t>(colours_.size());
    }
    return static_cast<std::uint8_t>(slots_[slot] - 1);
}

}  // namespace sorvik::codecs
