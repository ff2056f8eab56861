#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <tuple>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/cairo_objects.h"
#include "sorvikdraw/engine/cg_types.h"
#include "sorvikdraw/engine/drawing_budget.h"
#include "sorvikdraw/engine/picture_store.h"

namespace sorvik::draw {

/// What a drawing ends in: pixels, or a document that keeps shapes as shapes.
enum class Medium : std::uint8_t { raster, vector };

/// What the renderers of one thread have in common, those of a pattern's tiles too.
class Workshop {
public:
    /// A document is written once more when all is recorded, so it has half of the time. `budget` and `pictures` must
    /// outlive the workshop.
    Workshop(Medium medium, PixelBudget& budget, PictureStore& pictures)
        : medium_(medium),
          clock_(medium == Medium::vector ? limits::drawingSeconds / 2 : limits::drawingSeconds),
          budget_(budget),
          pictures_(pictures) {}

    /// A surface for a layer or tile, and the context that draws on it.
    struct Target {
        SurfaceHandle surface;
        ContextHandle context;
        PixelBudget::Share share;
        Box box;  ///< in device space, whole pixels
    };
    /// Throws LimitError.
    [[nodiscard]] Target makeTarget(const Box& box);

    /// A part of the pattern's tile as `columns` by `rows` pixels with the origin at its corner. `depth` is how many
    /// patterns it lies in. It lives until another tile is asked for. Throws LimitError.
    [[nodiscard]] cairo_surface_t* tile(const CGTransformingPattern& pattern, const Box& part, int columns, int rows,
                                        int depth);

    /// Counts a painting with so many points that a document holds until its end. Throws LimitError when it would hold
    /// too much.
    void record(std::size_t points);

    [[nodiscard]] Medium medium() const { return medium_; }
    [[nodiscard]] DrawingClock& clock() { return clock_; }
    [[nodiscard]] PictureSurfaces& pictures() { return pictures_; }

private:
    using TileKey = std::tuple<const CGTransformingPattern*, double, double, double, double, int, int>;

    Medium medium_;
    DrawingClock clock_;
    PixelBudget& budget_;
    PictureSurfaces pictures_;
    std::map<TileKey, Target> tiles_;
    double tilePixels_ = 0;
    std::size_t recordedBytes_ = 0;
};

}  // namespace sorvik::draw
