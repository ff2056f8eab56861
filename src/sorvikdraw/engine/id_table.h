#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace sorvik::draw::layer_tree {

/// Values by id; the first of an id counts. Sorted at the first look-up and not hashed, since it is the document that
/// chooses the ids and it could choose such as collide.
template <typename Value>
class IdTable {
public:
    /// Only before the first look-up. The id must outlive the table.
    void add(std::string_view id, Value value) { entries_.push_back({id, std::move(value)}); }

    /// Null if there is none; good as long as the table.
    [[nodiscard]] Value* find(std::string_view id) {
        sort();
        const auto entry = std::ranges::lower_bound(entries_, id, {}, &Entry::id);
        return entry != entries_.end() && entry->id == id ? &entry->value : nullptr;
    }

private:
    struct Entry {
        std::string_view id;
        Value value;
    };

    void sort() {
        if (!std::exchange(isSorted_, true)) {
            std::ranges::stable_sort(entries_, {}, &Entry::id);
        }
    }

    std::vector<Entry> entries_;
    bool isSorted_ = false;
};

}  // namespace sorvik::draw::layer_tree
