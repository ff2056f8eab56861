#pragma once

#include <string>

namespace sorvik::bundle {

enum class Page {
    missing,  ///< no file, or an empty one
    cut,      ///< the file ends too early or is none of those told below
    blank,    ///< each pixel is as transparent as at the start
    painted,
};

/// Looks at a PNG as Ghostscript's device `pngalpha` writes it: four channels of 8 bits, not interlaced. Stops
/// inflating at the first pixel that was painted. Source: ISO/IEC 15948 (PNG, second edition).
[[nodiscard]] Page lookAtPage(const std::string& path);

}  // namespace sorvik::bundle
