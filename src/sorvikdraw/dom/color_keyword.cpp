#include "sorvikdraw/dom/color_keyword.h"

namespace sorvik::draw::dom {

namespace {

// The table's own order is nearly that of the names: "grey" stands before "green".
constexpr auto rowsByName = [] {
    auto rows = colorKeywords;
    std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return rows;
}();
static_assert(std::adjacent_find(rowsByName.begin(), rowsByName.end(),
                                 [](const auto& a, const auto& b) { return a.name == b.name; }) == rowsByName.end());

}  // namespace

std::optional<ColorKeyword> colorKeyword(std::string_view name) {
    const auto* const row = std::lower_bound(rowsByName.begin(), rowsByName.end(), name,
                                             [](const auto& a, std::string_view wanted) { return a.name < wanted; });
    if (row == rowsByName.end() || row->name != name) {
        return std::nullopt;
    }
    return row->keyword;
}

}  // namespace sorvik::draw::dom
