#include "sorvikdraw/engine/cg_renderer.h"

#include <utility>

#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/gradient_source.h"
#include "sorvikdraw/engine/layer_extents.h"

namespace sorvik::draw {
namespace {

constexpr double commandCost = 100;  // nanoseconds

// Clips with more points take long to be cut with each path that is painted; the layer for one costs less.
constexpr std::size_t simplePath = 60;
// So many clips in each other, too, take longer than a layer.
constexpr int mostClips = 32;

Affine matrixOf(cairo_t* context) {
    cairo_matrix_t m;
    cairo_get_matrix(context, &m);
    return {m.xx, m.yx, m.xy, m.yy, m.x0, m.y0};
}

}  // namespace

CGRenderer::CGRenderer(cairo_t* context, const Box& visible, Workshop& workshop, int depth)
    : ctx_(context), baseCTM_(matrixOf(context)), workshop_(workshop), depth_(depth) {
    levels_.emplace_back();
    state().user = baseCTM_;
    state().clip = visible;
}

void CGRenderer::play(const CGCommands& commands) {
    layerExtents_ = layerExtents(commands, state().user);
    nextLayer_ = 0;
    save();
    cairo_identity_matrix(ctx_);
    pushLevel(Kind::state);
    for (const CGCommand& command : commands) {
        workshop_.clock().spend(commandCost);
        if (!skips(command)) {
            std::visit(*this, command.value);
        }
    }
    skippedLayers_ = 0;
    while (levels_.size() > 1) {
        popLevel();
    }
    restore();
    checkContext();
}

void CGRenderer::operator()(const CGCommand::Concatenate& command) {
    state().user = state().user * Affine::of(command.transform);
}

void CGRenderer::operator()(const CGCommand::Translate& command) {
    state().user = state().user * Affine::translation(static_cast<double>(command.tx), static_cast<double>(command.ty));
}

void CGRenderer::operator()(const CGCommand::Rotate& command) {
    state().user = state().user * Affine::rotation(static_cast<double>(command.angle));
}

void CGRenderer::operator()(const CGCommand::Scale& command) {
    state().user = state().user * Affine::scaling(static_cast<double>(command.sx), static_cast<double>(command.sy));
}

void CGRenderer::operator()(const CGCommand::SetFill& command) {
    state().fill = command.color;
    state().pattern = nullptr;
}

void CGRenderer::operator()(const CGCommand::SetFillPattern& command) { state().pattern = command.pattern.get(); }

void CGRenderer::operator()(const CGCommand::SetStroke& command) { state().stroke = command.color; }

void CGRenderer::operator()(const CGCommand::SetLine& command) {
    state().line.width = static_cast<double>(command.width);
}

void CGRenderer::operator()(const CGCommand::SetLineCap& command) { state().line.cap = command.cap; }

void CGRenderer::operator()(const CGCommand::SetLineJoin& command) { state().line.join = command.join; }

void CGRenderer::operator()(const CGCommand::SetLineMiter& command) {
    state().line.miterLimit = static_cast<double>(command.limit);
}

void CGRenderer::operator()(const CGCommand::SetClip& command) {
    clip(FilledOutline{command.path.get(), state().user, command.rule}, hullOf(*command.path));
}

void CGRenderer::operator()(const CGCommand::SetAlpha& command) {
    state().alpha = std::clamp(static_cast<double>(command.alpha), 0.0, 1.0);
}

void CGRenderer::operator()(const CGCommand::SetBlend& command) { state().blend = command.mode; }

void CGRenderer::operator()(const CGCommand::Stroke& command) {
    settleClip();
    paint(StrokedOutline{command.path.get(), state().user, state().line},
          Source{.color = state().stroke, .alpha = state().alpha});
}

void CGRenderer::operator()(const CGCommand::ClipStrokeOutline& command) {
    clip(StrokedOutline{command.path.get(), state().user, state().line},
         hullOf(*command.path).grown(reachOf(state().line)));
}

void CGRenderer::operator()(const CGCommand::Fill& command) {
    settleClip();
    const FilledOutline outline{command.path.get(), state().user, command.rule};
    if (state().pattern != nullptr) {
        paintPattern(outline, *state().pattern);
    } else {
        paint(outline, Source{.color = state().fill, .alpha = state().alpha});
    }
}

void CGRenderer::operator()(const CGCommand::DrawLinearGradient& command) {
    if (command.from == command.to && isFlat(state().pendingClip)) {
        return;
    }
    paintGradient(linearSource(*command.gradient, command.from, command.to, state().user, state().alpha),
                  command.gradient->stops.size());
}

void CGRenderer::operator()(const CGCommand::DrawRadialGradient& command) {
    paintGradient(radialSource(*command.gradient, *command.circles, state().user, state().alpha),
                  command.gradient->stops.size());
}

void CGRenderer::operator()(const CGCommand::PushState& /*command*/) {
    settleClip();
    pushLevel(Kind::state);
}

void CGRenderer::operator()(const CGCommand::PopState& /*command*/) { popTo(Kind::state); }

void CGRenderer::operator()(const CGCommand::PushTransparencyLayer& /*command*/) {
    settleClip();
    const Box box = state().clip.intersected(layerExtents_.at(nextLayer_++).rounded()).rounded();
    if (!box.hasArea()) {
        skippedLayers_ = 1;
        return;
    }
    pushTarget(Kind::layer, box);
    state().alpha = 1;
    state().blend = BlendMode::normal;
}

void CGRenderer::operator()(const CGCommand::PopTransparencyLayer& /*command*/) { popTo(Kind::layer); }

// True for the commands of layers that show nothing.
bool CGRenderer::skips(const CGCommand& command) {
    if (skippedLayers_ == 0) {
        return false;
    }
    if (std::holds_alternative<CGCommand::PushTransparencyLayer>(command.value)) {
        ++nextLayer_;
        ++skippedLayers_;
    } else if (std::holds_alternative<CGCommand::PopTransparencyLayer>(command.value) && --skippedLayers_ == 0 &&
               state().blend == BlendMode::destinationIn) {
        clearClip();
    }
    return true;
}

void CGRenderer::save() {
    cairo_save(ctx_);
    sourceColor_.reset();
    blendInUse_.reset();
}

void CGRenderer::restore() {
    cairo_restore(ctx_);
    sourceColor_.reset();
    blendInUse_.reset();
}

void CGRenderer::checkContext() const {
    if (const auto status = cairo_status(ctx_); status != CAIRO_STATUS_SUCCESS) {
        throw DrawingError(cairo_status_to_string(status));
    }
}

void CGRenderer::pushLevel(Kind kind) {
    Level level;
    level.state = state();
    level.clips = levels_.back().clips;
    level.kind = kind;
    levels_.push_back(std::move(level));
}

void CGRenderer::pushTarget(Kind kind, const Box& box) {
    Workshop::Target target = workshop_.makeTarget(box);
    pushLevel(kind);
    levels_.back().clips = 0;
    state().clip = box;
    state().pendingClip = {};
    levels_.back().below = std::exchange(ctx_, target.context.get());
    levels_.back().target = std::move(target);
    sourceColor_.reset();
    blendInUse_.reset();
}

void CGRenderer::popLevel() {
    Level level = std::move(levels_.back());
    levels_.pop_back();
    if (level.kind == Kind::state) {
        if (level.saved) {
            restore();
        }
        return;
    }
    checkContext();
    sourceColor_.reset();
    blendInUse_.reset();
    level.target.context.reset();
    ctx_ = level.below;
    if (level.kind == Kind::layer) {
        composite(level.target);
    } else {
        const PatternHandle source(cairo_pattern_create_for_surface(level.target.surface.get()));
        cairo_pattern_set_filter(source.get(), CAIRO_FILTER_NEAREST);
        paint(level.outline, Source{.pattern = source.get(), .alpha = level.alpha});
    }
}

// Ends the levels above the last one of a kind, and that one; a pop without its push does nothing.
void CGRenderer::popTo(Kind kind) {
    std::size_t index = levels_.size() - 1;
    while (index > 1 && levels_[index].kind != kind) {
        if (levels_[index].kind == (kind == Kind::state ? Kind::layer : Kind::state)) {
            return;
        }
        --index;
    }
    while (index > 1 && levels_.size() > index) {
        popLevel();
    }
}

void CGRenderer::composite(const Workshop::Target& layer) {
    if (workshop_.medium() == Medium::vector && state().blend == BlendMode::destinationIn) {
        compositeAsMask(layer);
        return;
    }
    const PatternHandle source(cairo_pattern_create_for_surface(layer.surface.get()));
    cairo_pattern_set_filter(source.get(), CAIRO_FILTER_NEAREST);
    paintAll(Source{.pattern = source.get(), .alpha = state().alpha});
}

// Documents know no such blend mode, but they know masks: what was painted in the layer around is painted anew
// through the mask. Elsewhere than right inside of a layer, where no drawing has it, it would come out as pixels.
void CGRenderer::compositeAsMask(const Workshop::Target& mask) {
    Level& around = levels_.back();
    if (around.kind != Kind::layer || around.saved) {
        return;
    }
    Workshop::Target masked = workshop_.makeTarget(around.target.box);
    cairo_set_source_surface(masked.context.get(), around.target.surface.get(), 0, 0);
    cairo_mask_surface(masked.context.get(), mask.surface.get(), 0, 0);
    replaceTarget(std::move(masked));
}

void CGRenderer::replaceTarget(Workshop::Target target) {
    ctx_ = target.context.get();
    levels_.back().target = std::move(target);
    sourceColor_.reset();
    blendInUse_.reset();
}

// What the blend mode destinationIn makes of a painting of nothing.
void CGRenderer::clearClip() {
    if (workshop_.medium() == Medium::raster) {
        paintAll(Source{});
    } else if (levels_.back().kind == Kind::layer && !levels_.back().saved) {
        replaceTarget(workshop_.makeTarget(levels_.back().target.box));
    }
}

void CGRenderer::clip(const Outline& outline, const Box& hull) {
    settleClip();
    const Affine& user = state().user;
    const bool shows = user.invertible() && !hull.isNowhere();
    state().clip = shows ? state().clip.intersected((user * hull).grown(1)) : Box{};
    if (state().clip.hasArea()) {
        state().pendingClip = outline;
    }
}

// A gradient in units of such a path's box has no extent, and is no gradient.
bool CGRenderer::isFlat(const Outline& outline) {
    const auto* stroked = std::get_if<StrokedOutline>(&outline);
    return stroked != nullptr && !hullOf(*stroked->path).hasArea();
}

void CGRenderer::settleClip() {
    const Outline outline = std::exchange(state().pendingClip, {});
    if (std::holds_alternative<std::monostate>(outline)) {
        return;
    }
    const auto* filled = std::get_if<FilledOutline>(&outline);
    Level& level = levels_.back();
    if (filled == nullptr || filled->path->points().size() > simplePath || level.clips >= mostClips) {
        pushTarget(Kind::outline, state().clip.rounded());
        levels_.back().outline = outline;
        return;
    }
    if (!level.saved) {
        save();
        level.saved = true;
    }
    ++level.clips;
    addFilledPath(ctx_, *filled->path, filled->user, filled->user * hullOf(*filled->path));
    cairo_set_fill_rule(ctx_, cairoRule(filled->rule));
    cairo_clip(ctx_);
}

}  // namespace sorvik::draw
