#include "sorvikdraw/text/glyph_pen.h"

namespace sorvik::draw::text {
namespace {

// One glyph being drawn. HarfBuzz's y grows upward.
struct Drawing {
    Outline& outline;
    Outline::Point origin;
    float unit = 0;

    [[nodiscard]] Outline::Point at(float x, float y) const { return {origin.x + x * unit, origin.y - y * unit}; }
};

Drawing& drawing(void* data) { return *static_cast<Drawing*>(data); }

void move(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
    drawing(data).outline.move(drawing(data).at(x, y));
}

void line(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
    drawing(data).outline.line(drawing(data).at(x, y));
}

void quadratic(hb_draw_funcs_t*, void* data, hb_draw_state_t* state, float controlX, float controlY, float x, float y,
               void*) {
    constexpr float part = 2.0F / 3;
    const auto towardsControl = [&](float fromX, float fromY) {
        return drawing(data).at(fromX + (controlX - fromX) * part, fromY + (controlY - fromY) * part);
    };
    drawing(data).outline.cubic(towardsControl(state->current_x, state->current_y), towardsControl(x, y),
                                drawing(data).at(x, y));
}

void cubic(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x1, float y1, float x2, float y2, float x, float y,
           void*) {
    const Drawing& to = drawing(data);
    to.outline.cubic(to.at(x1, y1), to.at(x2, y2), to.at(x, y));
}

void close(hb_draw_funcs_t*, void* data, hb_draw_state_t*, void*) { drawing(data).outline.close(); }

}  // namespace

GlyphPen::GlyphPen() : functions_(hb_draw_funcs_create()) {
    hb_draw_funcs_set_move_to_func(functions_.get(), move, nullptr, nullptr);
    hb_draw_funcs_set_line_to_func(functions_.get(), line, nullptr, nullptr);
    hb_draw_funcs_set_quadratic_to_func(functions_.get(), quadratic, nullptr, nullptr);
    hb_draw_funcs_set_cubic_to_func(functions_.get(), cubic, nullptr, nullptr);
    hb_draw_funcs_set_close_path_func(functions_.get(), close, nullptr, nullptr);
}

void GlyphPen::draw(Outline& outline, hb_font_t* font, hb_codepoint_t glyph, Outline::Point at, float unit) const {
    Drawing drawing{outline, at, unit};
#if HB_VERSION_ATLEAST(7, 0, 0)
    hb_font_draw_glyph(font, glyph, functions_.get(), &drawing);
#else
    hb_font_get_glyph_shape(font, glyph, functions_.get(), &drawing);
#endif
}

}  // namespace sorvik::draw::text
