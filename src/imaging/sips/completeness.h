#pragma once

#include <cstddef>
#include <span>

#include "imaging/sips/content_kind.h"
#include "imaging/sips/tiff_directory.h"

namespace sorvik::sips {

/// Whether a file ends before its (first) picture does, for the kinds whose decoders pass that over:
/// PNG (no end chunk), TIFF (strips, tiles or the profile reach beyond the end), PSD (the merged
/// picture is short of bytes). False for all other kinds.
[[nodiscard]] bool isCutOff(ContentKind kind, std::span<const std::byte> bytes);

/// The same for one page of a TIFF.
[[nodiscard]] bool tiffPageIsCutOff(std::span<const std::byte> bytes, const TiffDirectory& directory);

/// Whether the markers of a JPEG lead from one segment or scan to the next up to the end marker (ITU-T
/// T.81, B.1). What the scans hold is not looked at.
[[nodiscard]] bool jpegMarkersReachEnd(std::span<const std::byte> jpeg);

}  // namespace sorvik::sips
