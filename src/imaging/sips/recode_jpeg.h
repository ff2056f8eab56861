#pragma once

#include "imaging/sips/arguments.h"

namespace sorvik::sips {

/// Writes the coefficients of a JPEG anew, in progressive scans with Huffman tables of their own: the same pixels to
/// the bit, no metadata, and no more bytes than most encoders spend. Throws Failure.
void recodeJpeg(const RecodeRequest& request);

}  // namespace sorvik::sips
