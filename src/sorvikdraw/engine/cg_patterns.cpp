#include <algorithm>
#include <cmath>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/cg_renderer.h"

// How the renderer fills with tiles.
namespace sorvik::draw {
namespace {

constexpr int deepestPattern = static_cast<int>(limits::expansionDepth);

// So few repetitions are drawn one by one, as sharp as anything else.
constexpr double fewTiles = 4;

// With more pixels than this to a side, a tile is made coarser than the canvas; with so many more, it can't be placed.
constexpr double largestSide = 4096;
constexpr double coarsest = 1000;

// Tiles that are smaller on the canvas, in pixels or points, are stretched to about that: no eye tells one from many,
// and neither pixels nor documents could hold them.
constexpr double smallestPixels = 1;
constexpr double smallestPoints = 0.125;

struct Span {
    double from, to;
    [[nodiscard]] double length() const { return to - from; }
};

// One axis of a pattern's space: which part of a tile is made, and how its repetitions lie.
struct TileAxis {
    Span part;      ///< of the tile at the origin
    double origin;  ///< of a repetition
    double period;
    int pixels;
};

// How often a tile is repeated over what is visible.
struct Repetitions {
    double first, count;

    Repetitions(const Span& tile, const Span& visible)
        : first(std::floor((visible.from - tile.from) / tile.length())),
          count(std::ceil((visible.to - tile.from) / tile.length()) - first) {}
};

// `onCanvas` is how long the tile is there.
TileAxis axisOf(const Span& tile, const Span& visible, double onCanvas, Medium medium) {
    const auto pixels = [](double length) {
        constexpr double noise = 1e-3;
        return static_cast<int>(std::clamp(std::ceil(length - noise), 1.0, largestSide));
    };
    const Repetitions repetitions(tile, visible);
    if (repetitions.count == 1 && onCanvas > largestSide) {
        const double moved = repetitions.first * tile.length();
        const Span shown{std::max(tile.from + moved, visible.from), std::min(tile.to + moved, visible.to)};
        return {{shown.from - moved, shown.to - moved},
                shown.from,
                shown.length(),
                pixels(onCanvas * shown.length() / tile.length())};
    }
    const double smallest = medium == Medium::raster ? smallestPixels : smallestPoints;
    const double stretch = std::max(1.0, std::floor(smallest / onCanvas));
    // The sides of a document's tile are whole numbers, too, but of no certain unit.
    return {tile, tile.from, tile.length() * stretch,
            medium == Medium::raster ? pixels(onCanvas) : pixels(largestSide)};
}

Span across(const Box& box) { return {box.left, box.right}; }
Span down(const Box& box) { return {box.top, box.bottom}; }

constexpr std::size_t pointsOfCommand = 3;  // about, of a command that draws

}  // namespace

void CGRenderer::paintPattern(const FilledOutline& outline, const CGTransformingPattern& pattern) {
    const Box tile = Box::of(pattern.bounds);
    const Box hull = outline.user.invertible() ? hullOf(*outline.path) : Box{};
    if (hull.isNowhere() || !tile.hasArea() || depth_ >= deepestPattern) {
        return;
    }
    const Box visible = state().clip.intersected((outline.user * hull).grown(1)).rounded();
    if (!visible.hasArea()) {
        return;
    }
    const Box inPattern = outline.user.inverse() * visible;
    if (Repetitions(across(tile), across(inPattern)).count * Repetitions(down(tile), down(inPattern)).count <=
        fewTiles) {
        paintTiles(outline, pattern, visible);
    } else {
        paintRepeated(outline, pattern, inPattern);
    }
}

void CGRenderer::paintTiles(const FilledOutline& outline, const CGTransformingPattern& pattern, const Box& visible) {
    const Box tile = Box::of(pattern.bounds);
    const Box inPattern = outline.user.inverse() * visible;
    const Repetitions columns(across(tile), across(inPattern));
    const Repetitions rows(down(tile), down(inPattern));
    pushTarget(Kind::outline, visible);
    levels_.back().outline = outline;
    levels_.back().alpha = state().alpha;
    for (int row = 0; row < static_cast<int>(rows.count); ++row) {
        for (int column = 0; column < static_cast<int>(columns.count); ++column) {
            const double x = (columns.first + column) * tile.width();
            const double y = (rows.first + row) * tile.height();
            paintTile(pattern, outline.user * Affine::translation(x, y), visible);
        }
    }
    popLevel();
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

void CGRenderer::paintRepeated(const FilledOutline& outline, const CGTransformingPattern& pattern,
                               const Box& inPattern) {
    const Affine& user = outline.user;
    const Box tile = Box::of(pattern.bounds);
    const double width = tile.width() * std::hypot(user.a, user.b);
    const double height = tile.height() * std::hypot(user.c, user.d);
    const TileAxis x = axisOf(across(tile), across(inPattern), width, workshop_.medium());
    const TileAxis y = axisOf(down(tile), down(inPattern), height, workshop_.medium());
    if (width * x.part.length() > x.pixels * coarsest * tile.width() ||
        height * y.part.length() > y.pixels * coarsest * tile.height()) {
        return;
    }
    // A document holds the tile anew for each thing that is filled with it.
    workshop_.record(pattern.contents.size() * pointsOfCommand);
    const Box part{x.part.from, y.part.from, x.part.to, y.part.to};
    const PatternHandle source(
        cairo_pattern_create_for_surface(workshop_.tile(pattern, part, x.pixels, y.pixels, depth_ + 1)));
    const Affine toTile = Affine::scaling(x.pixels / x.period, y.pixels / y.period) *
                          Affine::translation(-x.origin, -y.origin) * user.inverse();
    const cairo_matrix_t matrix = cairoMatrix(toTile);
    cairo_pattern_set_matrix(source.get(), &matrix);
    cairo_pattern_set_extend(source.get(), CAIRO_EXTEND_REPEAT);
    paint(outline, Source{.pattern = source.get(), .alpha = state().alpha, .pixelCost = 10});
}

}  // namespace sorvik::draw
