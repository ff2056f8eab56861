#include "sorvikdraw/text/font_families.h"

#include <algorithm>
#include <cstddef>

namespace sorvik::draw::text {
namespace {

constexpr std::size_t mostFamilies = 16;
constexpr std::size_t longestName = 256;  // bytes

std::string_view trimmed(std::string_view name) {
    constexpr std::string_view unwanted = " \t\n\r\"'";
    const auto first = name.find_first_not_of(unwanted);
    return first == std::string_view::npos ? std::string_view()
                                           : name.substr(first, name.find_last_not_of(unwanted) - first + 1);
}

}  // namespace

std::string fontFamilies(std::string_view list) {
    std::string families;
    for (std::size_t count = 0; count < mostFamilies && !list.empty(); ++count) {
        const auto end = std::min(list.find(','), list.size());
        const auto name = trimmed(list.substr(0, end));
        if (!name.empty() && name.size() <= longestName) {
            families.append(families.empty() ? "" : ",").append(name);
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return families;
}

}  // namespace sorvik::draw::text
