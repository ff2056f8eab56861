#pragma once

#include <cstddef>
#include <span>

namespace sorvik::sips {

/// Whether a drawing gives its width or height in a unit of length (mm, cm, in, pt, pc, Q) and not in pixels or
/// not at all. Looks at the root element only, plain or gzip-compressed; anything unclear is no.
[[nodiscard]] bool hasAbsoluteUnits(std::span<const std::byte> svg);

}  // namespace sorvik::sips
