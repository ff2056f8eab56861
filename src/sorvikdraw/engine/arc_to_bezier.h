#pragma once

#include <vector>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// A piece of an ellipse between two points, of the up to four that have these radii and this rotation.
struct Arc {
    Point start, end;
    float rx = 0, ry = 0;  ///< signs count for nothing; too small ones grow until the ellipse reaches both points
    float rotation = 0;    ///< of the x radius, in degrees
    bool large = false;    ///< the longer way round
    bool sweep = false;    ///< towards growing angles
};

/// The arc from start to end as up to five cubics, each of about a quarter turn at most. None where there is nothing to
/// draw (points or a radius that coincide or vanish) or where the numbers leave what a float holds.
[[nodiscard]] std::vector<PathSegment::Cubic> arcToBezier(const Arc& arc);

}  // namespace sorvik::draw::layer_tree
