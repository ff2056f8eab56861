#include "sorvikdraw/engine/raster_output.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <thread>
#include <vector>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/cg_renderer.h"
#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw {
namespace {

// Less than this is drawn before a thread has begun.
constexpr std::int64_t pixelsWorthThreads = 400'000;
constexpr std::size_t commandsWorthThreads = 5'000;
constexpr int smallestBand = 32;  // rows

int pixelsOf(double length) {
    constexpr double noise = 1e-6;  // of sizes and scales that were multiplied
    const double pixels = std::ceil(length - noise);
    if (!(pixels >= 1)) {
        throw DrawingError("Failed to create CGContext");
    }
    if (pixels > static_cast<double>(limits::side)) {
        throw LimitError("the picture would have too many pixels");
    }
    return static_cast<int>(pixels);
}

struct Rows {
    int top, bottom;
};

// What is drawn outside of the rows is lost. What is drawn inside depends on them in no more than the last bits of the
// places that pixels of turned patterns and pictures are taken from.
void drawRows(Raster& raster, Rows rows, const CGCommands& commands, double scale, Workshop workshop) {
    const SurfaceHandle surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(raster.row(rows.top)), CAIRO_FORMAT_ARGB32,
                                            raster.width(), rows.bottom - rows.top, static_cast<int>(raster.stride())));
    cairo_surface_set_device_offset(surface.get(), 0, -rows.top);
    const ContextHandle context(cairo_create(surface.get()));
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) {
        throw DrawingError("Failed to create CGContext");
    }
    cairo_scale(context.get(), scale, scale);
    const Box visible{0, static_cast<double>(rows.top), static_cast<double>(raster.width()),
                      static_cast<double>(rows.bottom)};
    CGRenderer(context.get(), visible, workshop).play(commands);
}

void drawBands(Raster& raster, int bands, const CGCommands& commands, double scale, PixelBudget& budget) {
    PictureStore pictures(budget);
    std::vector<std::future<void>> others;
    const auto draw = [&](int band) {
        const auto edge = [&](int of) { return static_cast<int>(std::int64_t{raster.height()} * of / bands); };
        drawRows(raster, {edge(band), edge(band + 1)}, commands, scale, Workshop(Medium::raster, budget, pictures));
    };
    for (int band = 1; band < bands; ++band) {
        others.push_back(std::async(std::launch::async, draw, band));
    }
    draw(0);
    for (auto& other : others) {
        other.get();
    }
}

}  // namespace

Raster::Raster(int width, int height)
    : width_(width),
      height_(height),
      // Pages of zeros come for nothing, and those that nothing is drawn on are never touched.
      pixels_(static_cast<std::uint32_t*>(
          std::calloc(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), sizeof(std::uint32_t)))) {
    if (!pixels_) {
        throw DrawingError("Failed to create CGContext");
    }
}

int bandsFor(int width, int height, std::size_t commands) {
    if (std::int64_t{width} * height < pixelsWorthThreads && commands < commandsWorthThreads) {
        return 1;
    }
    const auto processors = static_cast<int>(std::thread::hardware_concurrency());
    return std::clamp(processors, 1, std::max(1, height / smallestBand));
}

Raster rasterize(const SVG& svg, double scale, Background background, std::optional<int> bands) {
    const double pixelsPerUnit = scale == 0 ? 1 : scale;
    const int width = pixelsOf(svg.size().width * pixelsPerUnit);
    const int height = pixelsOf(svg.size().height * pixelsPerUnit);
    PixelBudget budget;
    const auto share = budget.take(std::int64_t{width} * height);
    Raster raster(width, height);
    if (background == Background::white) {
        std::fill_n(raster.row(0), std::int64_t{width} * height, 0xFFFFFFFF);
    }
    drawBands(raster, bands.value_or(bandsFor(width, height, svg.commands().size())), svg.commands(), pixelsPerUnit,
              budget);
    return raster;
}

Raster rasterize(const SVG& svg, SVG::Size size, double scale) {
    return rasterize(svg.sized(size), scale, Background::transparent, {});
}

}  // namespace sorvik::draw
