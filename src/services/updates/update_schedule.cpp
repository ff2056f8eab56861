#include "services/updates/update_schedule.h"

#include <algorithm>
#include <cmath>

namespace sorvik {

std::chrono::seconds untilCheckIsDue(WallTime last, WallTime now, double interval) {
    constexpr std::chrono::seconds longest = std::chrono::years(1);
    if (last.count() <= 0 || last > now) {
        return {};
    }
    const double wanted = std::isnan(interval) ? 0 : interval;
    const double bounded = std::clamp(wanted, double(shortestUpdateInterval.count()), double(longest.count()));
    const std::chrono::seconds passed = now - last;
    return std::max(std::chrono::seconds{}, std::chrono::seconds(std::lround(bounded)) - passed);
}

}  // namespace sorvik
