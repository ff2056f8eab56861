#pragma once

#include <QString>

#include <functional>

namespace sorvik {

/// Where log lines go. Called from any thread, one call at a time.
using LogSink = std::function<void(const QString& line)>;

/// Replaces the sink; standard output at first. An empty function makes the program silent.
void setLogSink(LogSink sink);

/// Hands one line, without its line feed, to the sink. Any thread.
void logLine(const QString& line);

}  // namespace sorvik
