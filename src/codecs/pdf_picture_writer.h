#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs {

/// Writes a PDF of one page, one point a pixel, with the picture embedded without loss: FlateDecode
/// with the PNG predictors, the profile as ICCBased colour space, alpha as a soft mask, XMP as the
/// document's metadata stream. `sink` must outlive the writer.
[[nodiscard]] std::unique_ptr<RowWriter> makePdfPictureWriter(ByteSink& sink, const PixelLayout& layout,
                                                              const PictureMetadata& metadata);

/// The same page with a JPEG stream (1 or 3 components, 8 bits) embedded as it stands, DCTDecode.
/// `layout` describes what the stream decodes to. Throws SinkError.
void writeJpegPdf(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata,
                  std::span<const std::byte> jpeg);

}  // namespace sorvik::codecs
