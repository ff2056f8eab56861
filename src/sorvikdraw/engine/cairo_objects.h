#pragma once

#include <cairo.h>

#include <memory>

#include "sorvikdraw/engine/affine.h"

namespace sorvik::draw {

struct CairoDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using ContextHandle = std::unique_ptr<cairo_t, CairoDeleter>;
using SurfaceHandle = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using PatternHandle = std::unique_ptr<cairo_pattern_t, CairoDeleter>;

[[nodiscard]] inline cairo_matrix_t cairoMatrix(const Affine& m) { return {m.a, m.b, m.c, m.d, m.tx, m.ty}; }

}  // namespace sorvik::draw
