#include <algorithm>
#include <cmath>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/cg_renderer.h"
#include "sorvikdraw/engine/stroke_pieces.h"

// How the renderer brings paint into its context.
namespace sorvik::draw {
namespace {

// Guesses in nanoseconds, on the high side.
constexpr double pointCost = 40;
constexpr double clipCost = 1e5;  // at worst
constexpr double edgeRowCost = 150;
constexpr double crowdCost = 0.07;
constexpr double stopCost = 0.3;  // for each pixel, of gradients with many stops
constexpr std::size_t fewStops = 16;
constexpr std::size_t pointsOfStop = 50;  // that cost a document as much
constexpr std::size_t fewPoints = 500;

// Dearer paintings are done piece by piece, with looks at the clock in between.
constexpr double longestPiece = 2e8;
// Beyond it edges are smoothed with fewer steps, in a third of the time.
constexpr double dearFill = 1e9;

constexpr double largestMask = 4e6;  // pixels

// With more pixels than this to a side, a tile is made coarser than the canvas.
constexpr double largestTileSide = 4096;
// So few repetitions are drawn one by one, as sharp as anything else.
constexpr double fewTiles = 4;
constexpr int deepestPattern = static_cast<int>(limits::expansionDepth);

cairo_operator_t cairoOperator(BlendMode mode, Medium medium) {
    switch (mode) {
        case BlendMode::normal:
            return CAIRO_OPERATOR_OVER;
        case BlendMode::copy:
            // Documents do not know it. It is used in masks, where things seldom overlap.
            return medium == Medium::raster ? CAIRO_OPERATOR_SOURCE : CAIRO_OPERATOR_OVER;
        case BlendMode::destinationIn:
            return CAIRO_OPERATOR_DEST_IN;
    }
    return CAIRO_OPERATOR_OVER;
}

// The more edges a row of pixels crosses, the longer each of them takes.
double fillCost(const CGPath& path, const Affine& toDevice, const Box& visible) {
    const std::size_t points = path.points().size();
    const double cost = static_cast<double>(points) * pointCost;
    if (points <= fewPoints) {
        return cost;
    }
    const double rows = edgeRows(path, toDevice, visible);
    return cost + rows * (edgeRowCost + rows / std::max(visible.height(), 1.0) * crowdCost);
}

// Which repetitions of a tile touch a box in the pattern's space.
struct TileRange {
    double left, top, right, bottom;  ///< whole; right and bottom are beyond the last

    TileRange(const Box& box, const Box& tile)
        : left(std::floor((box.left - tile.left) / tile.width())),
          top(std::floor((box.top - tile.top) / tile.height())),
          right(std::ceil((box.right - tile.left) / tile.width())),
          bottom(std::ceil((box.bottom - tile.top) / tile.height())) {}

    [[nodiscard]] double count() const { return (right - left) * (bottom - top); }
};

int pixelsOf(double length) {
    constexpr double noise = 1e-3;
    return static_cast<int>(std::clamp(std::ceil(length - noise), 1.0, largestTileSide));
}

// By which whole factor a picture is made smaller before the context's filter does the rest, which grows slow and
// coarse beyond.
int reduction(int pixels, double length) {
    return static_cast<int>(
        std::clamp(std::floor(pixels / std::max(length, 1.0) / 2), 1.0, static_cast<double>(pixels)));
}

}  // namespace

void CGRenderer::setOperator() {
    if (blendInUse_ != state().blend) {
        blendInUse_ = state().blend;
        cairo_set_operator(ctx_, cairoOperator(state().blend, workshop_.medium()));
    }
}

void CGRenderer::setSource(const Source& source) {
    if (source.pattern != nullptr) {
        cairo_set_source(ctx_, source.pattern);
        sourceColor_.reset();
        return;
    }
    CGColor color = source.color;
    color.a *= static_cast<float>(source.alpha);
    if (sourceColor_ != color) {
        sourceColor_ = color;
        cairo_set_source_rgba(ctx_, static_cast<double>(color.r), static_cast<double>(color.g),
                              static_cast<double>(color.b), static_cast<double>(color.a));
    }
}

// Where a painting within a box changes something.
Box CGRenderer::affected(const Box& painted) const {
    const State& state = levels_.back().state;
    return state.blend == BlendMode::destinationIn ? state.clip : state.clip.intersected(painted.grown(1));
}

template <typename Act>
void CGRenderer::inSlices(const Box& visible, double cost, Act act) {
    workshop_.clock().spend(cost + levels_.back().clips * clipCost);
    if (cost <= longestPiece || workshop_.medium() == Medium::vector) {
        act();
        return;
    }
    const Box whole = visible.rounded();
    const double rows = std::max(1.0, std::floor(whole.height() * longestPiece / cost));
    for (double top = whole.top; top < whole.bottom; top += rows) {
        cairo_save(ctx_);
        cairo_rectangle(ctx_, whole.left, top, whole.width(), std::min(rows, whole.bottom - top));
        cairo_clip(ctx_);
        act();
        cairo_restore(ctx_);
        workshop_.clock().look();
    }
}

// With the blend mode copy, the context takes alpha for coverage, so that what is below would shine through.
void CGRenderer::paintFaded(const Outline& outline, const Source& source) {
    const Workshop::Target faded = workshop_.makeTarget(state().clip.rounded());
    cairo_set_source(faded.context.get(), source.pattern);
    cairo_paint_with_alpha(faded.context.get(), source.alpha);
    const PatternHandle pattern(cairo_pattern_create_for_surface(faded.surface.get()));
    paint(outline, Source{.pattern = pattern.get()});
}

bool CGRenderer::mustFade(const Source& source) const {
    const State& state = levels_.back().state;
    return source.pattern != nullptr && source.alpha < 1 && state.blend == BlendMode::copy && state.clip.hasArea();
}

void CGRenderer::paint(const FilledOutline& outline, const Source& source) {
    if (mustFade(source)) {
        paintFaded(outline, source);
        return;
    }
    const Box box = outline.user.invertible() ? outline.user * hullOf(*outline.path) : Box{};
    const Box visible = affected(box);
    if (!visible.hasArea()) {
        return;
    }
    if (box.isNowhere()) {
        clearClip();
        return;
    }
    workshop_.record(outline.path->points().size());
    double cost = fillCost(*outline.path, outline.user, visible);
    const bool dear = cost > dearFill;
    cost = (dear ? cost / 3 : cost) + visible.area() * source.pixelCost;
    setSource(source);
    setOperator();
    cairo_set_antialias(ctx_, dear ? CAIRO_ANTIALIAS_FAST : CAIRO_ANTIALIAS_DEFAULT);
    inSlices(visible, cost, [&] {
        addFilledPath(ctx_, *outline.path, outline.user, box);
        cairo_set_fill_rule(ctx_, cairoRule(outline.rule));
        if (source.pattern == nullptr || source.alpha >= 1) {
            cairo_fill(ctx_);
            return;
        }
        cairo_save(ctx_);
        cairo_clip(ctx_);
        cairo_paint_with_alpha(ctx_, source.alpha);
        cairo_restore(ctx_);
    });
}

void CGRenderer::paint(const StrokedOutline& outline, const Source& source) {
    const Box hull = outline.user.invertible() ? hullOf(*outline.path) : Box{};
    const bool shows = !hull.isNowhere() && isVisible(outline.line, outline.user);
    const Box visible = affected(shows ? outline.user * hull.grown(reachOf(outline.line)) : Box{});
    if (!visible.hasArea()) {
        return;
    }
    if (!shows) {
        clearClip();
        return;
    }
    workshop_.record(outline.path->points().size());
    const double cost = strokeCost(*outline.path, outline.user, outline.line, visible);
    if (cost > longestPiece && workshop_.medium() == Medium::raster) {
        paintInPieces(outline, source, visible.rounded());
        return;
    }
    setSource(source);
    setOperator();
    inSlices(visible, cost + visible.area() * source.pixelCost, [&] {
        addStrokedPath(ctx_, *outline.path, outline.user, outline.user * hull, outline.line);
        strokeAdded(ctx_, outline.line, outline.user);
    });
}

// As one piece, such a stroke could take minutes and gigabytes. The pieces make a mask together.
void CGRenderer::paintInPieces(const StrokedOutline& outline, const Source& source, const Box& visible) {
    setSource(source);
    setOperator();
    const double rows = std::ceil(largestMask / visible.width());
    for (double top = visible.top; top < visible.bottom; top += rows) {
        const Box slice{visible.left, top, visible.right, std::min(top + rows, visible.bottom)};
        const Workshop::Target mask = workshop_.makeTarget(slice);
        forEachStrokePiece(*outline.path, outline.user, outline.line, slice, longestPiece, [&](const CGPath& piece) {
            addStrokedPath(mask.context.get(), piece, outline.user, outline.user * hullOf(piece), outline.line);
            strokeAdded(mask.context.get(), outline.line, outline.user);
            workshop_.clock().look();
        });
        cairo_save(ctx_);
        cairo_rectangle(ctx_, slice.left, slice.top, slice.width(), slice.height());
        cairo_clip(ctx_);
        cairo_mask_surface(ctx_, mask.surface.get(), 0, 0);
        cairo_restore(ctx_);
    }
}

void CGRenderer::paint(const Outline& outline, const Source& source) {
    if (const auto* filled = std::get_if<FilledOutline>(&outline)) {
        paint(*filled, source);
    } else if (const auto* stroked = std::get_if<StrokedOutline>(&outline)) {
        paint(*stroked, source);
    } else {
        paintAll(source);
    }
}

// All of the clip.
void CGRenderer::paintAll(const Source& source) {
    const Box& clip = state().clip;
    if (!clip.hasArea()) {
        return;
    }
    if (mustFade(source)) {
        paintFaded({}, source);
        return;
    }
    setSource(source);
    setOperator();
    inSlices(clip, clip.area() * source.pixelCost, [&] {
        if (source.pattern == nullptr || source.alpha >= 1) {
            cairo_paint(ctx_);
        } else {
            cairo_paint_with_alpha(ctx_, source.alpha);
        }
    });
}

void CGRenderer::paintGradient(PatternHandle gradient, std::size_t stops) {
    if (!gradient) {
        return;
    }
    workshop_.record(stops * pointsOfStop);
    const double manyStops = stops > fewStops ? static_cast<double>(stops) * stopCost : 0;
    paint(state().pendingClip, Source{.pattern = gradient.get(), .pixelCost = 5 + manyStops});
}

void CGRenderer::operator()(const CGCommand::Draw& command) {
    settleClip();
    const Affine& user = state().user;
    const Box rect = Box::of(command.in);
    const Box visible = user.invertible() ? state().clip.intersected(user * rect) : Box{};
    if (!visible.hasArea() || !rect.hasArea()) {
        return;
    }
    const CGImage& image = *command.image;
    if (image.width <= 0 || image.height <= 0) {
        return;
    }
    const bool toPixels = workshop_.medium() == Medium::raster;
    const int columns = toPixels ? reduction(image.width, rect.width() * std::hypot(user.a, user.b)) : 1;
    const int rows = toPixels ? reduction(image.height, rect.height() * std::hypot(user.c, user.d)) : 1;
    const auto picture = workshop_.pictures().find(image, columns, rows);
    if (picture.surface == nullptr) {
        return;
    }
    const Affine toPicture = Affine::scaling(static_cast<double>(image.width) / columns / rect.width(),
                                             static_cast<double>(image.height) / rows / rect.height()) *
                             Affine::translation(-rect.left, -rect.top) * user.inverse();
    const cairo_matrix_t matrix = cairoMatrix(toPicture);
    const PatternHandle pattern(cairo_pattern_create_for_surface(picture.surface));
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_GOOD);
    // Borders stay sharp where the picture is stretched; a document would have to repeat its border pixels for it.
    cairo_pattern_set_extend(pattern.get(), toPixels ? CAIRO_EXTEND_PAD : CAIRO_EXTEND_NONE);
    const CGPath path = rectanglePath(command.in);
    paint(FilledOutline{&path, user, dom::FillRule::nonzero},
          Source{.pattern = pattern.get(), .alpha = state().alpha, .pixelCost = 20});
}

void CGRenderer::paintPattern(const FilledOutline& outline, const CGTransformingPattern& pattern) {
    const Affine user = outline.user;
    const Box tile = Box::of(pattern.bounds);
    const Box hull = hullOf(*outline.path);
    if (!user.invertible() || hull.isNowhere() || !tile.hasArea() || depth_ >= deepestPattern) {
        return;
    }
    const Box visible = state().clip.intersected((user * hull).grown(1)).rounded();
    if (!visible.hasArea()) {
        return;
    }
    const double width = tile.width() * std::hypot(user.a, user.b);
    const double height = tile.height() * std::hypot(user.c, user.d);
    const TileRange range(user.inverse() * visible, tile);
    if (range.count() <= fewTiles) {
        pushTarget(Kind::outline, visible);
        levels_.back().outline = outline;
        levels_.back().alpha = state().alpha;
        for (double y = range.top; y < range.bottom; ++y) {
            for (double x = range.left; x < range.right; ++x) {
                paintTile(pattern, user * Affine::translation(x * tile.width(), y * tile.height()), visible);
            }
        }
        popLevel();
        return;
    }
    // The sides of a document's tile are whole numbers, too, but of no certain unit.
    const bool toPixels = workshop_.medium() == Medium::raster;
    const double unit = largestTileSide / std::max(tile.width(), tile.height());
    const int columns = pixelsOf(toPixels ? width : tile.width() * unit);
    const int rows = pixelsOf(toPixels ? height : tile.height() * unit);
    const PatternHandle source(cairo_pattern_create_for_surface(workshop_.tile(pattern, columns, rows, depth_ + 1)));
    const Affine toTile = Affine::scaling(columns / tile.width(), rows / tile.height()) *
                          Affine::translation(-tile.left, -tile.top) * user.inverse();
    const cairo_matrix_t matrix = cairoMatrix(toTile);
    cairo_pattern_set_matrix(source.get(), &matrix);
    cairo_pattern_set_extend(source.get(), CAIRO_EXTEND_REPEAT);
    paint(outline, Source{.pattern = source.get(), .alpha = state().alpha, .pixelCost = 10});
}

// `user` is the space of this repetition.
void CGRenderer::paintTile(const CGTransformingPattern& pattern, const Affine& user, const Box& visible) {
    const CGPath bounds = rectanglePath(pattern.bounds);
    const Box box = user * Box::of(pattern.bounds);
    cairo_save(ctx_);
    addFilledPath(ctx_, bounds, user, box);
    cairo_set_fill_rule(ctx_, CAIRO_FILL_RULE_WINDING);
    cairo_clip(ctx_);
    const cairo_matrix_t matrix = cairoMatrix(user);
    cairo_set_matrix(ctx_, &matrix);
    CGRenderer(ctx_, visible.intersected(box.rounded()), workshop_, depth_ + 1).play(pattern.contents);
    cairo_restore(ctx_);
}

}  // namespace sorvik::draw
