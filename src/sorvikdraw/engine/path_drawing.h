#pragma once

#include <cairo.h>

#include "sorvikdraw/engine/affine.h"
#include "sorvikdraw/engine/cg_types.h"

namespace sorvik::draw {

struct LineStyle {
    double width = 1;
    dom::LineCap cap = dom::LineCap::butt;
    dom::LineJoin join = dom::LineJoin::miter;
    double miterLimit = 10;
};

/// The box around all points, control points included, in the path's own space. Nowhere for an empty path and for one
/// with a point that is no number.
[[nodiscard]] Box hullOf(const CGPath& path);

/// How far from the path a line may reach, in the path's space.
[[nodiscard]] double reachOf(const LineStyle& line);

/// Adds a path to the context's, whose matrix must be the identity: `toDevice`, an invertible map, is applied here.
/// `deviceHull` is the hull so mapped. Parts of the path far off the canvas, where the context would lose count, are
/// pulled nearer without a change of what is seen.
void addFilledPath(cairo_t* context, const CGPath& path, const Affine& toDevice, const Box& deviceHull);

/// The same for a path to be stroked with `line`: a part without length becomes a stub that gets its caps, or nothing.
void addStrokedPath(cairo_t* context, const CGPath& path, const Affine& toDevice, const Box& deviceHull,
                    const LineStyle& line);

/// False when such a line is invisible or can't be drawn: without width, or under a map that leaves nothing of it.
[[nodiscard]] bool isVisible(const LineStyle& line, const Affine& toDevice);

/// Strokes the path that was added, with a visible line, and clears it.
void strokeAdded(cairo_t* context, const LineStyle& line, const Affine& toDevice);

[[nodiscard]] cairo_fill_rule_t cairoRule(dom::FillRule rule);

/// A closed rectangle.
[[nodiscard]] CGPath rectanglePath(const layer_tree::Rect& rect);

/// How many pairs of an edge and a pixel row that it crosses there are within `visible`, about: what filling costs.
[[nodiscard]] double edgeRows(const CGPath& path, const Affine& toDevice, const Box& visible);

}  // namespace sorvik::draw
