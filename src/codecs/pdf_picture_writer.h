#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// Writes a PDF of one page, one point a pixel, with the picture embedded without loss: FlateDecode
/// with the PNG predictors, the profile as ICCBased colour space, alpha as a soft mask, XMP as the
/// document's metadata stream (ISO 32000-1). EXIF and IPTC have no place in it.
/// `sink` must outlive the writer. Throws SinkError, and std::invalid_argument for no PixelLayout.
[[nodiscard]] std::unique_ptr<RowWriter> makePdfPictureWriter(ByteSink& sink, const PixelLayout& layout,
                                                              const PictureMetadata& metadata);

/// The same page with a JPEG stream (1 or 3 components, 8 bits) embedded as it stands, DCTDecode.
/// `layout` describes what the stream decodes to. An EXIF orientation within it has no effect on the page.
/// Throws SinkError.
void writeJpegPdf(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata,
                  std::span<const std::byte> jpeg);

}  // namespace sorvik::codecs
