#pragma once

#include <memory>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// What a PNG is written for.
enum class PngPurpose {
    intermediate,  ///< read back at once and thrown away: stored blocks, no filter, as fast as a copy
    quick,         ///< a drawing's result: as small as usual, in a tenth of the time
    kept,          ///< a result: filter chosen by row, well compressed; a palette where that loses nothing
};

struct PngOptions {
    PngPurpose purpose = PngPurpose::kept;
    int level = 6;  ///< 0 to 9, as zlib's scale; read for kept pictures only
};

/// Writes a PNG (ISO/IEC 15948) of the layout given, never interlaced, with all of the metadata:
/// iCCP, eXIf, pHYs, XMP as iTXt "XML:com.adobe.xmp", IPTC as zTXt "Raw profile type iptc". A profile
/// of another colour space than the layout's is left out.
/// `sink` must outlive the writer. Throws SinkError, and std::invalid_argument for no PixelLayout.
[[nodiscard]] std::unique_ptr<RowWriter> makePngWriter(ByteSink& sink, const PixelLayout& layout,
                                                       const PictureMetadata& metadata, const PngOptions& options);

}  // namespace sorvik::codecs
