#pragma once

#include <vips/vips.h>
#include <cstddef>

namespace sorvik::sips {

/// Bytes from one row of a region to the next.
[[nodiscard]] inline std::size_t strideOf(const VipsRegion* region) { return static_cast<std::size_t>(region->bpl); }

/// The pixel at (x, y), which lies in the region.
[[nodiscard]] inline std::byte* pixelAt(const VipsRegion* region, int x, int y) {
    const std::size_t pixelBytes =
        vips_format_sizeof(region->im->BandFmt) * static_cast<std::size_t>(region->im->Bands);
    const auto right = static_cast<std::size_t>(x - region->valid.left);
    const auto down = static_cast<std::size_t>(y - region->valid.top);
    return reinterpret_cast<std::byte*>(region->data) + down * strideOf(region) + right * pixelBytes;
}

}  // namespace sorvik::sips
