#pragma once

#include <memory>
#include <vips/vips8>

#include "codecs/intermediate_png.h"

namespace sorvik::sips {

/// The pixels of an intermediate as an image, copied from the mapped file when they are asked for.
[[nodiscard]] vips::VImage imageOf(std::shared_ptr<codecs::IntermediatePng> png);

}  // namespace sorvik::sips
