#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

namespace sorvik::draw::command_line {

enum class ExitStatus : std::uint8_t {
    written = 0,   ///< the output stands, whole; or the help text was printed
    failed = 1,    ///< the drawing or a file
    badUsage = 2,  ///< the arguments
};

/// One run of the tool. Never throws: each failure is one line on standard error, the engine's or this one's.
[[nodiscard]] ExitStatus run(std::span<const std::string_view> arguments) noexcept;

}  // namespace sorvik::draw::command_line
