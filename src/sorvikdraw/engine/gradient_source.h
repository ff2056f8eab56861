#pragma once

#include "sorvikdraw/engine/cairo_objects.h"
#include "sorvikdraw/engine/cg_types.h"

namespace sorvik::draw {

/// What to paint with in a context whose matrix is the identity. Before its start and beyond its end a gradient has its
/// first and its last colour; one without extent has its last colour everywhere. `alpha` multiplies it as a whole.
/// Null when nothing can be painted: without stops, and where numbers are none.
[[nodiscard]] PatternHandle linearSource(const CGGradient& gradient, layer_tree::Point from, layer_tree::Point to,
                                         const Affine& toDevice, double alpha);
[[nodiscard]] PatternHandle radialSource(const CGGradient& gradient,
                                         const CGCommand::DrawRadialGradient::Circles& circles, const Affine& toDevice,
                                         double alpha);

}  // namespace sorvik::draw
