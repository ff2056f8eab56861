#include "sorvikdraw/engine/workshop.h"

#include "sorvikdraw/engine/cg_renderer.h"
#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw {
namespace {

// Tiles beyond it are made again when they are needed again.
constexpr double mostTilePixels = 16e6;

// What the library that writes documents keeps of each painting.
constexpr std::size_t bytesOfPainting = 900;
constexpr std::size_t bytesOfPoint = 16;
constexpr std::size_t mostRecorded = 320U << 20U;

SurfaceHandle makeSurface(Medium medium, const Box& box) {
    if (medium == Medium::vector) {
        const cairo_rectangle_t extents{box.left, box.top, box.width(), box.height()};
        return SurfaceHandle(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents));
    }
    SurfaceHandle surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(box.width()), static_cast<int>(box.height())));
    cairo_surface_set_device_offset(surface.get(), -box.left, -box.top);
    return surface;
}

}  // namespace

Workshop::Target Workshop::makeTarget(const Box& box) {
    Target target;
    if (medium_ == Medium::raster) {
        target.share = budget_.take(static_cast<std::int64_t>(box.area()));
        clock_.spend(box.area());
    }
    target.surface = makeSurface(medium_, box);
    target.context.reset(cairo_create(target.surface.get()));
    target.box = box;
    if (const auto status = cairo_status(target.context.get()); status != CAIRO_STATUS_SUCCESS) {
        throw DrawingError(cairo_status_to_string(status));
    }
    return target;
}

void Workshop::record(std::size_t points) {
    if (medium_ == Medium::vector) {
        recordedBytes_ += bytesOfPainting + points * bytesOfPoint;
        if (recordedBytes_ > mostRecorded) {
            throw LimitError("the drawing is too large for a document");
        }
    }
}

cairo_surface_t* Workshop::tile(const CGTransformingPattern& pattern, const Box& part, int columns, int rows,
                                int depth) {
    const TileKey key{&pattern, part.left, part.top, part.right, part.bottom, columns, rows};
    if (const auto found = tiles_.find(key); found != tiles_.end()) {
        return found->second.surface.get();
    }
    const Box box{0, 0, static_cast<double>(columns), static_cast<double>(rows)};
    Target target = makeTarget(box);
    const Affine toTile = Affine::scaling(box.width() / part.width(), box.height() / part.height()) *
                          Affine::translation(-part.left, -part.top);
    const cairo_matrix_t matrix = cairoMatrix(toTile);
    cairo_set_matrix(target.context.get(), &matrix);
    CGRenderer(target.context.get(), box, *this, depth).play(pattern.contents);
    if (tilePixels_ + box.area() > mostTilePixels) {
        tiles_.clear();
        tilePixels_ = 0;
    }
    tilePixels_ += box.area();
    return tiles_.emplace(key, std::move(target)).first->second.surface.get();
}

}  // namespace sorvik::draw
