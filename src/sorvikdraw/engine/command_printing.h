#pragma once

#include <string>

#include "sorvikdraw/engine/cg_types.h"

/// Commands as text, to look at and to compare. A command is one line by its name; a list is lines, each with its end.
namespace sorvik::draw {

[[nodiscard]] std::string print(const CGCommand& command);
[[nodiscard]] std::string print(const CGCommands& commands);

}  // namespace sorvik::draw
