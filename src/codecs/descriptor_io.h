#pragma once

#include <cstddef>
#include <span>

namespace sorvik::codecs {

/// Writes all of `bytes` at the descriptor's position. Throws SinkError.
void writeAll(int fileDescriptor, std::span<const std::byte> bytes);

/// Writes all of `bytes` from the file offset given, whatever the descriptor's position. Throws SinkError.
void writeAllAt(int fileDescriptor, std::span<const std::byte> bytes, std::size_t offset);

}  // namespace sorvik::codecs
