#pragma once

#include <cstdint>

namespace sorvik {

/// What of this process stands in memory, in bytes; 0 when the system doesn't tell. Any thread.
[[nodiscard]] std::uint64_t residentMemory();

/// The machine's memory in bytes; 0 when the system doesn't tell. Any thread.
[[nodiscard]] std::uint64_t physicalMemory();

}  // namespace sorvik
