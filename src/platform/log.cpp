#include "platform/log.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace sorvik {
namespace {

void writeToStandardOutput(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

struct Log {
    std::mutex lock;
    LogSink sink = writeToStandardOutput;
};

// Never destroyed: objects that live until the end of the program may log in their destructors.
Log& programLog() {
    static Log& log = *new Log;
    return log;
}

}  // namespace

void setLogSink(LogSink sink) {
    Log& log = programLog();
    const std::scoped_lock guard(log.lock);
    std::swap(log.sink, sink);
}

void logLine(const QString& line) {
    Log& log = programLog();
    const std::scoped_lock guard(log.lock);
    if (log.sink) {
        log.sink(line);
    }
}

}  // namespace sorvik
