#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace sorvik::sips {

/// The IPTC-IIM records (resource 0x0404) of a Photoshop block, with or without its leading name, as
/// JPEG carries it in APP13. Empty when there are none.
[[nodiscard]] std::vector<std::byte> iptcOfPhotoshopBlock(std::span<const std::byte> block);

/// A Photoshop block for APP13 with nothing but these records.
[[nodiscard]] std::vector<std::byte> photoshopBlockOf(std::span<const std::byte> iptc);

}  // namespace sorvik::sips
