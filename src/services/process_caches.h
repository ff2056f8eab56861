#pragma once

#include <functional>

namespace sorvik {

/// Makes known a cache that lives as long as the process, when it is first used. `clear` is called from any thread.
/// Any thread.
void registerProcessCache(std::function<void()> clear);

/// Empties all of them. Any thread.
void clearProcessCaches();

}  // namespace sorvik
