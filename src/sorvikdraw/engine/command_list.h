#pragma once

#include <cstddef>

#include "sorvikdraw/engine/cg_types.h"

/// What can be asked of a list of commands as a value. Patterns that stand in many places are looked at once.
namespace sorvik::draw {

/// Whether two lists draw the same by the same steps.
[[nodiscard]] bool equal(const CGCommands& a, const CGCommands& b);

/// Equal lists have equal hashes.
[[nodiscard]] std::size_t hash(const CGCommands& commands);

/// Bytes of memory, about; stops counting beyond `enough`.
[[nodiscard]] std::size_t memoryUse(const CGCommands& commands, std::size_t enough);

}  // namespace sorvik::draw
