#include "platform/byte_count.h"

#include <algorithm>
#include <array>

namespace sorvik {
namespace {

struct Unit {
    const char* name;
    std::int64_t bytes;
    int decimals;
};

constexpr std::int64_t step = 1024;
constexpr std::array units{
    Unit{"bytes", 1, 0},
    Unit{"KB", step, 0},
    Unit{"MB", step* step, 1},
    Unit{"GB", step* step* step, 1},
};

/// In tenths of the unit, rounded to the unit's decimals.
constexpr std::int64_t roundedTenths(std::int64_t bytes, const Unit& unit) {
    const std::int64_t scale = unit.decimals == 0 ? 1 : 10;
    const std::int64_t rounded =
        bytes / unit.bytes * scale + (bytes % unit.bytes * scale + unit.bytes / 2) / unit.bytes;
    return rounded * (10 / scale);
}

static_assert(roundedTenths(step * step - 1, units[1]) == step * 10);

}  // namespace

QString formatByteCount(std::int64_t bytes) {
    const std::int64_t count = std::max<std::int64_t>(bytes, 0);
    if (count == 1) {
        return QStringLiteral("1 byte");
    }
    // Rounding may carry a count into the next unit: there is no "1024 KB".
    const auto* unit = std::ranges::find_if(units.begin(), units.end() - 1, [&](const Unit& u) {
        return count < step * u.bytes && roundedTenths(count, u) < step * 10;
    });
    const std::int64_t tenths = roundedTenths(count, *unit);
    QString text = QString::number(tenths / 10);
    if (tenths % 10 != 0) {
        text += QLatin1Char('.') + QString::number(tenths % 10);
    }
    return text + QLatin1Char(' ') + QString::fromLatin1(unit->name);
}

}  // namespace sorvik
