#pragma once

#include <hb.h>

#include <memory>

#include "sorvikdraw/text/outline.h"

namespace sorvik::draw::text {

/// Draws glyphs into outlines.
class GlyphPen {
public:
    GlyphPen();

    /// Adds a glyph whose origin stands at (x, y), y growing downward; one unit of the font's scale becomes `unit`
    /// long. A glyph without an outline, as a coloured one, adds nothing.
    void draw(Outline& outline, hb_font_t* font, hb_codepoint_t glyph, Outline::Point at, float unit) const;

private:
    struct Destroy {
        void operator()(hb_draw_funcs_t* functions) const { hb_draw_funcs_destroy(functions); }
    };
    std::unique_ptr<hb_draw_funcs_t, Destroy> functions_;
};

}  // namespace sorvik::draw::text
