#pragma once

#include <cstddef>
#include <span>

namespace sorvik::sips {

/// What a file holds, by its first bytes; its name never counts.
enum class ContentKind {
    unknown,
    jpeg,
    png,
    gif,
    webp,
    tiff,
    cameraRaw,  ///< TIFF-like files of cameras: only a thumbnail would be readable here
    bmp,
    psd,
    ico,
    heif,  ///< HEIC and AVIF
    svg,
    svgz,
    pdf,
};

/// Looks at the beginning of `bytes`, the whole file. Follows at most the first directory of a TIFF.
[[nodiscard]] ContentKind contentKindOf(std::span<const std::byte> bytes);

}  // namespace sorvik::sips
