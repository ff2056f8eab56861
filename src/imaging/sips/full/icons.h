#pragma once

#include "imaging/sips/arguments.h"
#include "imaging/sips/files.h"

namespace sorvik::sips {

/// Writes OUTPUT.<side> for each of the request's icon sizes: the whole picture pressed into a square,
/// a PNG of 8-bit sRGB with alpha. Either all files are left or none. Throws Failure and vips::VError.
void writeIcons(const ConvertRequest& request, const InputFile& input);

}  // namespace sorvik::sips
