#pragma once

#include "sorvikdraw/dom/url.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// The picture that a "data:" URL holds, still encoded and not looked into. Throws DrawingError ("Cannot decode image")
/// for every other URL and for pictures that are neither JPEG nor PNG.
[[nodiscard]] Bitmap loadBitmap(const dom::URL& url);

}  // namespace sorvik::draw::layer_tree
