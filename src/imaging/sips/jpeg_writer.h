#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::sips {

struct JpegOptions {
    int quality = 92;         ///< 0 to 100, libjpeg's scale
    bool fullChroma = false;  ///< 4:4:4, else 4:2:0
};

/// Writes a JPEG (baseline, JFIF) of 8-bit grey or RGB rows with EXIF, XMP, ICC and IPTC in their
/// segments. EXIF and XMP beyond the 64 KiB of a segment are left out. `sink` must outlive the writer.
[[nodiscard]] std::unique_ptr<codecs::RowWriter> makeJpegWriter(codecs::ByteSink& sink,
                                                                const codecs::PixelLayout& layout,
                                                                const codecs::PictureMetadata& metadata,
                                                                const JpegOptions& options);

}  // namespace sorvik::sips
