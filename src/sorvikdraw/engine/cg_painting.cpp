#include <algorithm>
#include <cmath>
#include <numbers>

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

// By which whole factor a picture is made smaller before the context's filter does the rest, which grows slow and
// coarse beyond.
int reduction(int pixels, double length) {
    return static_cast<int>(
        std::clamp(std::floor(pixels / std::max(length, 1.0) / 2), 1.0, static_cast<double>(pixels)));
}

// How many points the pen leaves at a point of the path: round joins are arcs, cut as finely as the context is exact.
std::size_t cornersOfJoin(const LineStyle& line, const Affine& toDevice) {
    constexpr double tolerance = 0.1;
    if (line.join != dom::LineJoin::round && line.cap != dom::LineCap::round) {
        return 1;
    }
    const double radius = std::max(line.width * toDevice.stretch().most / 2, tolerance);
    return static_cast<std::size_t>(std::numbers::pi * std::sqrt(std::min(radius, 1e6) / (2 * tolerance))) + 1;
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
    const auto rows = static_cast<int>(std::max(1.0, std::floor(whole.height() * longestPiece / cost)));
    for (int top = 0; top < static_cast<int>(whole.height()); top += rows) {
        cairo_save(ctx_);
        cairo_rectangle(ctx_, whole.left, whole.top + top, whole.width(), rows);
        cairo_clip(ctx_);
        act();
        cairo_restore(ctx_);
        workshop_.clock().look();
    }
}

// With the blend mode copy, the context takes alpha for coverage, so that what is below would shine through.
PatternHandle CGRenderer::faded(const Source& source) {
    const State& state = levels_.back().state;
    if (source.pattern == nullptr || source.alpha >= 1 || state.blend != BlendMode::copy || !state.clip.hasArea()) {
        return nullptr;
    }
    const Workshop::Target layer = workshop_.makeTarget(state.clip.rounded());
    cairo_set_source(layer.context.get(), source.pattern);
    cairo_paint_with_alpha(layer.context.get(), source.alpha);
    return PatternHandle(cairo_pattern_create_for_surface(layer.surface.get()));
}

void CGRenderer::paint(const FilledOutline& outline, const Source& source) {
    const PatternHandle faint = faded(source);
    fill(outline, faint ? Source{.pattern = faint.get()} : source);
}

void CGRenderer::fill(const FilledOutline& outline, const Source& source) {
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
    workshop_.record(outline.path->points().size() * cornersOfJoin(outline.line, outline.user));
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
    const auto rows = static_cast<int>(std::ceil(largestMask / visible.width()));
    for (int row = 0; row < static_cast<int>(visible.height()); row += rows) {
        const double top = visible.top + row;
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
    const PatternHandle faint = faded(source);
    setSource(faint ? Source{.pattern = faint.get()} : source);
    setOperator();
    inSlices(clip, clip.area() * source.pixelCost, [&] {
        if (source.pattern == nullptr || faint || source.alpha >= 1) {
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

}  // namespace sorvik::draw
