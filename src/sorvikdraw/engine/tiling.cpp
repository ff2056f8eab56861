#include "sorvikdraw/engine/tiling.h"

#include <algorithm>
#include <array>
#include <memory>

#include "sorvikdraw/engine/cg_renderer.h"
#include "sorvikdraw/engine/path_drawing.h"

namespace sorvik::draw {
namespace {

using layer_tree::Rect;

bool hasArea(const Rect& rect) { return rect.size.width > 0 && rect.size.height > 0; }

Rect rectOf(const SVG& svg) {
    return {{0, 0}, {static_cast<float>(svg.size().width), static_cast<float>(svg.size().height)}};
}

template <typename Command>
void add(CGCommands& list, Command command) {
    list.push_back({std::move(command)});
}

// A part of the drawing, stretched over a rect.
void addStretched(CGCommands& list, const SVG& svg, const Rect& part, const Rect& in) {
    add(list, CGCommand::PushState{});
    add(list, CGCommand::SetClip{rectanglePath(in), dom::FillRule::nonzero});
    add(list, CGCommand::Translate{in.origin.x, in.origin.y});
    add(list, CGCommand::Scale{in.size.width / part.size.width, in.size.height / part.size.height});
    add(list, CGCommand::Translate{-part.origin.x, -part.origin.y});
    list.insert(list.end(), svg.commands().begin(), svg.commands().end());
    add(list, CGCommand::PopState{});
}

// A part of the drawing, repeated from the origin of a rect on.
void addTiled(CGCommands& list, const SVG& svg, const Rect& part, const Rect& in) {
    const auto tile = std::make_shared<const CGTransformingPattern>(CGTransformingPattern{part, svg.commands()});
    const Rect moved{part.origin, in.size};
    add(list, CGCommand::PushState{});
    add(list, CGCommand::Translate{in.origin.x - part.origin.x, in.origin.y - part.origin.y});
    add(list, CGCommand::SetFillPattern{tile});
    add(list, CGCommand::Fill{rectanglePath(moved), dom::FillRule::nonzero});
    add(list, CGCommand::PopState{});
}

// The three parts that one axis is cut into, in the drawing and where they go.
struct Cuts {
    std::array<float, 4> from{}, to{};

    Cuts(float size, double before, double after, float origin, float room) {
        const auto first = static_cast<float>(std::clamp(before, 0.0, static_cast<double>(size)));
        const auto last = static_cast<float>(std::clamp(after, 0.0, static_cast<double>(size - first)));
        const float shrink = std::min(1.0F, room / std::max(first + last, room));
        from = {0, first, size - last, size};
        to = {origin, origin + first * shrink, origin + room - last * shrink, origin + room};
    }
};

void play(cairo_t* context, const CGCommands& commands) {
    PixelBudget budget;
    PictureStore pictures(budget);
    const auto type = cairo_surface_get_type(cairo_get_target(context));
    Workshop workshop(type == CAIRO_SURFACE_TYPE_IMAGE ? Medium::raster : Medium::vector, budget, pictures);
    Box clip;
    cairo_save(context);
    cairo_identity_matrix(context);
    cairo_clip_extents(context, &clip.left, &clip.top, &clip.right, &clip.bottom);
    cairo_restore(context);
    CGRenderer(context, clip, workshop).play(commands);
}

}  // namespace

CGCommands placed(const SVG& svg, const std::optional<Rect>& in) {
    const Rect whole = rectOf(svg);
    const Rect target = in.value_or(whole);
    CGCommands list;
    if (hasArea(whole) && hasArea(target)) {
        addStretched(list, svg, whole, target);
    }
    return list;
}

CGCommands placed(const SVG& svg, const Rect& in, bool byTiling) {
    if (!byTiling) {
        return placed(svg, in);
    }
    CGCommands list;
    if (hasArea(rectOf(svg)) && hasArea(in)) {
        addTiled(list, svg, rectOf(svg), in);
    }
    return list;
}

CGCommands placed(const SVG& svg, const Rect& in, const SVG::Insets& capInsets, bool byTiling) {
    const auto [width, height] = rectOf(svg).size;
    const Cuts columns(width, capInsets.left, capInsets.right, in.origin.x, in.size.width);
    const Cuts rows(height, capInsets.top, capInsets.bottom, in.origin.y, in.size.height);
    constexpr std::size_t middle = 1;
    CGCommands list;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const auto rect = [&](const std::array<float, 4>& x, const std::array<float, 4>& y) {
                return Rect{{x[column], y[row]}, {x[column + 1] - x[column], y[row + 1] - y[row]}};
            };
            const Rect part = rect(columns.from, rows.from);
            const Rect target = rect(columns.to, rows.to);
            if (!hasArea(part) || !hasArea(target)) {
                continue;
            }
            const bool corner = column != middle && row != middle;
            byTiling && !corner ? addTiled(list, svg, part, target) : addStretched(list, svg, part, target);
        }
    }
    return list;
}

void draw(cairo_t* context, const SVG& svg, const std::optional<Rect>& in) { play(context, placed(svg, in)); }

void draw(cairo_t* context, const SVG& svg, const Rect& in, bool byTiling) { play(context, placed(svg, in, byTiling)); }

void draw(cairo_t* context, const SVG& svg, const Rect& in, const SVG::Insets& capInsets, bool byTiling) {
    play(context, placed(svg, in, capInsets, byTiling));
}

}  // namespace sorvik::draw
