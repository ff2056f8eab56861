#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

#include "sorvikdraw/tool/configuration.h"

namespace sorvik::draw::command_line {

/// The whole argument vector: the program, the input, then modifiers with their values. Throws Error (invalid) with
/// the option, its value and what is allowed. Looks at no file.
[[nodiscard]] Configuration parseConfiguration(std::span<const std::string_view> from,
                                               const std::filesystem::path& baseDirectory);

/// Whether "--help" stands where an input or an option is read; as an option's value it is a value.
[[nodiscard]] bool asksForHelp(std::span<const std::string_view> arguments);

/// Absent without a value, and for symbols, whose sizes are words. Throws Error.
[[nodiscard]] std::optional<Size> parseSize(std::optional<std::string_view> value, Format format);

/// `option` is what the sentence of a failure names. Throws Error.
[[nodiscard]] Insets parseInsets(std::optional<std::string_view> value, std::string_view option = "--insets");

/// Beside the input, under its name with the format's suffix and extension.
[[nodiscard]] std::filesystem::path makeOutput(const std::filesystem::path& input, Format format, Scale scale);

}  // namespace sorvik::draw::command_line
