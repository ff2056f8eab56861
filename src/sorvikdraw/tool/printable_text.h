#pragma once

#include <string>
#include <string_view>

namespace sorvik::draw::command_line {

/// A text as one line of UTF-8: control characters and bytes that are no UTF-8 as "\x1b", and its middle left out when
/// it is long.
[[nodiscard]] std::string printable(std::string_view text);

}  // namespace sorvik::draw::command_line
