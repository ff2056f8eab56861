#pragma once

#include <functional>

#include "sorvikdraw/engine/path_drawing.h"

namespace sorvik::draw {

/// Guesses how many nanoseconds stroking a path within `visible`, a box in device space, takes.
[[nodiscard]] double strokeCost(const CGPath& path, const Affine& toDevice, const LineStyle& line, const Box& visible);

/// Cuts a path into pieces that cost about `most` each, and look the same when all are stroked. Cuts are in the middle
/// of segments that two pieces share, so that corners stay; caps there lie within the line.
void forEachStrokePiece(const CGPath& path, const Affine& toDevice, const LineStyle& line, const Box& visible,
                        double most, const std::function<void(const CGPath&)>& act);

}  // namespace sorvik::draw
