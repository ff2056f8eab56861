#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "imaging/sips/content_kind.h"
#include "imaging/sips/tiff_directory.h"

namespace sorvik::sips {

/// What decides beside the pixels how a picture looks.
struct Looks {
    std::uint64_t width = 0;     ///< pixels as stored; 0 when unknown
    std::uint64_t height = 0;    ///< likewise
    int channels = 0;            ///< of colour: 1, 3, 4; 0 for others
    int orientation = 1;         ///< of EXIF or TIFF
    bool oriented = false;       ///< has an EXIF block (a TIFF: the tag), whatever that says
    std::vector<std::byte> icc;  ///< empty without a profile

    /// The gAMA and cHRM chunks of a PNG as they stand, which say what its samples mean where no profile does.
    std::vector<std::byte> calibration{};
};

/// The looks of the first picture of a JPEG, PNG, WebP or TIFF, by its header; absent for other kinds.
/// Throws Failure for damage.
[[nodiscard]] std::optional<Looks> looksOf(ContentKind kind, std::span<const std::byte> bytes);

/// The looks of one page of a TIFF.
[[nodiscard]] Looks tiffLooks(std::span<const std::byte> bytes, const TiffDirectory& directory);

/// What `kept` lacks of the looks of `original` although its pixels are still the same kind: its
/// orientation is 1, its profile and its calibration are empty where nothing is lacking. sRGB is never lacking.
[[nodiscard]] Looks lackingLooks(const Looks& original, const Looks& kept);

/// Whether anything is lacking.
[[nodiscard]] bool lacksAny(const Looks& lacking);

/// An EXIF block, a TIFF stream, that holds nothing but an orientation.
[[nodiscard]] std::vector<std::byte> exifOfOrientation(int orientation);

}  // namespace sorvik::sips
