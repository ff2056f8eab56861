#include "sorvikdraw/engine/pdf_output.h"

#include <cairo-pdf.h>

#include <algorithm>
#include <new>
#include <span>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/cg_renderer.h"
#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw {
namespace {

cairo_status_t append(void* closure, const unsigned char* data, unsigned int length) noexcept {
    auto& document = *static_cast<std::vector<std::byte>*>(closure);
    const auto bytes = std::as_bytes(std::span(data, length));
    try {
        document.insert(document.end(), bytes.begin(), bytes.end());
    } catch (const std::bad_alloc&) {
        return CAIRO_STATUS_NO_MEMORY;
    }
    return CAIRO_STATUS_SUCCESS;
}

// The surface adds the box of every painting to a region that grows with each box that lies apart, unless one painting
// before covered all. This one does and leaves no mark: what it encloses, it encloses twice, and its border is outside.
void coverPage(cairo_t* context, const SVG::Size& size) {
    constexpr double outside = 16;
    for (int time = 0; time < 2; ++time) {
        cairo_rectangle(context, -outside, -outside, size.width + 2 * outside, size.height + 2 * outside);
    }
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_fill(context);
}

void requireSuccess(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw DrawingError(cairo_status_to_string(status));
    }
}

// A surface writes its page at its end even when the drawing failed; without paintings, that takes no time.
void forgetPaintings(cairo_surface_t* surface) {
    const ContextHandle context(cairo_create(surface));
    cairo_set_operator(context.get(), CAIRO_OPERATOR_CLEAR);
    cairo_paint(context.get());
}

void drawPage(cairo_surface_t* surface, const SVG& svg) {
    constexpr std::size_t fewCommands = 1000;
    PixelBudget budget;
    PictureStore pictures(budget);
    Workshop workshop(Medium::vector, budget, pictures);
    const ContextHandle context(cairo_create(surface));
    if (svg.commands().size() > fewCommands) {
        coverPage(context.get(), svg.size());
    }
    CGRenderer(context.get(), {0, 0, svg.size().width, svg.size().height}, workshop).play(svg.commands());
    cairo_show_page(context.get());
    requireSuccess(cairo_status(context.get()));
    cairo_surface_finish(surface);
    requireSuccess(cairo_surface_status(surface));
}

}  // namespace

std::vector<std::byte> pdfDocument(const SVG& svg) {
    const auto [width, height] = svg.size();
    const bool drawable = width > 0 && height > 0;
    if (!drawable) {
        throw DrawingError("Failed to create CGContext");
    }
    if (std::max(width, height) > static_cast<double>(limits::side)) {
        throw LimitError("the page would be too large");
    }
    std::vector<std::byte> document;
    const SurfaceHandle surface(cairo_pdf_surface_create_for_stream(append, &document, width, height));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
        throw DrawingError("Failed to create CGContext");
    }
    try {
        drawPage(surface.get(), svg);
    } catch (const DrawingError&) {
        forgetPaintings(surface.get());
        throw;
    }
    return document;
}

}  // namespace sorvik::draw
