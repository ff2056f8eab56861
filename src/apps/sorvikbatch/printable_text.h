#pragma once

#include <QString>

#include <cstdio>

namespace sorvik {

/// A text with its control characters escaped ("\x1b"), so that no name and no picture's text drives a terminal.
[[nodiscard]] QString printable(const QString& text);

/// Writes a text to a stream as UTF-8, at once. Failures stay in the stream's error flag.
void print(std::FILE* stream, const QString& text);

}  // namespace sorvik
