#pragma once

#include <span>

#include "sorvikdraw/dom/path_segment.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// Path data as absolute moves, lines and cubics. A relative segment starts from the end of the last one that was drawn
/// and is no `close`, or from (0, 0); an arc that comes to nothing leaves the start of the next where it was.
[[nodiscard]] Path makePath(std::span<const dom::PathSegment> segments);

}  // namespace sorvik::draw::layer_tree
