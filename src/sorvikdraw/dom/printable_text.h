#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sorvik::draw {

/// Text from a foreign file made fit for one line on a terminal: always valid UTF-8, control characters and those that
/// turn the direction or break the line written as "\u{1b}", what is no UTF-8 replaced, and all beyond `characters`
/// cut off with an ellipsis.
[[nodiscard]] std::string printable(std::string_view text, std::size_t characters = 200);

}  // namespace sorvik::draw
