#pragma once

#include <QString>

#include <cstdint>

namespace sorvik {

/// A number of bytes for people, in steps of 1024 with the units bytes, KB, MB and GB: "0 bytes", "1 byte",
/// "875 bytes", "12 KB", "3.4 MB". One decimal from MB upward, none when it is zero.
[[nodiscard]] QString formatByteCount(std::int64_t bytes);

}  // namespace sorvik
