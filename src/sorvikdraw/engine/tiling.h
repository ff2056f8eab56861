#pragma once

#include <cairo.h>

#include <optional>

#include "sorvikdraw/engine/svg.h"

/// Drawings laid out in a rect.
namespace sorvik::draw {

// What follows makes lists that take and leave the user space of the context that they are played in.

/// The drawing stretched to the rect; without one at its own size from the origin on. A drawing without extent, and
/// one in a rect without, draws nothing; so with all lists here.
[[nodiscard]] CGCommands placed(const SVG& svg, const std::optional<layer_tree::Rect>& in);

/// Repeated from the rect's origin in steps of its size, and cut off at the rect's end. Stretched if not `byTiling`.
[[nodiscard]] CGCommands placed(const SVG& svg, const layer_tree::Rect& in, bool byTiling);

/// Sliced into nine parts by the insets: the corners at their size, edges and middle stretched or, with `byTiling`,
/// repeated. Where the rect is smaller than the insets, the corners are made smaller.
[[nodiscard]] CGCommands placed(const SVG& svg, const layer_tree::Rect& in, const SVG::Insets& capInsets,
                                bool byTiling);

// The same, played into a context. They throw LimitError, and DrawingError when the context fails.
void draw(cairo_t* context, const SVG& svg, const std::optional<layer_tree::Rect>& in = {});
void draw(cairo_t* context, const SVG& svg, const layer_tree::Rect& in, bool byTiling);
void draw(cairo_t* context, const SVG& svg, const layer_tree::Rect& in, const SVG::Insets& capInsets, bool byTiling);

}  // namespace sorvik::draw
