#pragma once

#include "codecs/byte_sink.h"
#include "codecs/picture.h"
#include "codecs/premultiplied_rows.h"

namespace sorvik::codecs {

/// Writes a drawing that is whole in memory as a PNG at about the speed of PngPurpose::quick: with a palette where it
/// has up to 256 colours, else without alpha where all of it is opaque. Besides the picture, memory holds some rows
/// and less than a megabyte. Throws SinkError, and std::invalid_argument for a picture without sides.
void writePremultipliedPng(ByteSink& sink, const PremultipliedPicture& picture, const PictureMetadata& metadata = {});

}  // namespace sorvik::codecs
