#pragma once

#include <cstddef>
#include <functional>

namespace sorvik {

/// Whether row n of a table is that of an enumeration's n-th case, so that a row is found by its case alone.
/// `key` projects a row to its case.
template <typename Table, typename Key>
constexpr bool isIndexedBy(const Table& table, Key key) {
    for (std::size_t index = 0; index < table.size(); ++index) {
        if (static_cast<std::size_t>(std::invoke(key, table[index])) != index) {
            return false;
        }
    }
    return true;
}

}  // namespace sorvik
