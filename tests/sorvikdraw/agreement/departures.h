#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sorvik::draw::test {

/// Why this engine draws the drawing otherwise than others do; nothing for one that must agree.
std::optional<std::string_view> departure(std::string_view drawing);

/// All drawings that have a reason, by name.
std::vector<std::string> departureNames();

}  // namespace sorvik::draw::test
