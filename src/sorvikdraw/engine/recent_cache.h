#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

namespace sorvik::draw {

/// Remembers at most `Slots` values; a value goes when one whose hash falls on its place comes.
template <typename Key, typename Value, std::size_t Slots>
class RecentCache {
public:
    /// The value that `make(key)` made for an equal key, or makes it now. Valid until the next call.
    template <typename Make>
    const Value& get(std::size_t hash, const Key& key, Make&& make) {
        if (!slots_) {
            slots_ = std::make_unique<std::array<Slot, Slots>>();
        }
        Slot& slot = (*slots_)[hash % Slots];
        if (!slot.entry || slot.hash != hash || !(slot.entry->first == key)) {
            slot.entry.reset();
            slot.entry.emplace(key, std::forward<Make>(make)(key));
            slot.hash = hash;
        }
        return slot.entry->second;
    }

private:
    struct Slot {
        std::size_t hash = 0;
        std::optional<std::pair<Key, Value>> entry;
    };
    std::unique_ptr<std::array<Slot, Slots>> slots_;  // most drawings never ask
};

}  // namespace sorvik::draw
