#pragma once

#include <chrono>

namespace sorvik {

/// Seconds since 1970; 0 is "never".
using WallTime = std::chrono::seconds;

/// When checks happen by themselves.
struct UpdateSchedule {
    std::chrono::milliseconds startDelay{10'000};  ///< what is due at the start waits until the start is over
    std::chrono::seconds retryDelay{3600};         ///< after a check that failed
};

inline constexpr std::chrono::seconds shortestUpdateInterval{3600};

/// How long to wait from `now` until a check `interval` after the `last` one. A last check in the future, made before
/// the clock was set back, counts as none.
[[nodiscard]] std::chrono::seconds untilCheckIsDue(WallTime last, WallTime now, double interval);

}  // namespace sorvik
