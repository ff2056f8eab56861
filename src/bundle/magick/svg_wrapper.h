#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sorvik::bundle {

/// An SVG that shows a PNG, pixel for unit, with nothing outside itself.
[[nodiscard]] std::string svgAround(std::string_view png, std::uint32_t width, std::uint32_t height);

/// Writes the SVG of a PNG file. False, and nothing left in the output, when either file does not do.
[[nodiscard]] bool wrapAsSvg(const std::string& png, const std::string& output);

}  // namespace sorvik::bundle
