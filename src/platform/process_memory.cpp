#include "platform/process_memory.h"

#include <unistd.h>

#include <QFile>
#include <QList>

namespace sorvik {
namespace {

std::uint64_t systemFigure(int name) {
    const long value = sysconf(name);
    return value > 0 ? static_cast<std::uint64_t>(value) : 0;
}

}  // namespace

std::uint64_t residentMemory() {
    constexpr qsizetype longestLine = 256;
    QFile statistics(QStringLiteral("/proc/self/statm"));
    if (!statistics.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return 0;
    }
    const QList<QByteArray> pages = statistics.read(longestLine).split(' ');
    return pages.value(1).toULongLong() * systemFigure(_SC_PAGESIZE);
}

std::uint64_t physicalMemory() { return systemFigure(_SC_PHYS_PAGES) * systemFigure(_SC_PAGESIZE); }

}  // namespace sorvik
