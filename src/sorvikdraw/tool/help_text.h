#pragma once

#include <string>

namespace sorvik::draw::command_line {

/// What "--help" prints: every option, the formats, examples, the exit statuses.
[[nodiscard]] std::string helpText();

}  // namespace sorvik::draw::command_line
