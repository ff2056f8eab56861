#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "sorvikdraw/dom/boxed.h"

namespace sorvik::draw {

enum class BlendMode : std::uint8_t {
    normal,
    copy,           ///< the source replaces what is there, within its coverage
    destinationIn,  ///< what is there stays as far as the source's alpha goes
};

/// One step of a drawing, in the types of a back end (RendererTypes): Float, Point, Size, Rect, Color, Gradient, Path,
/// Pattern, Transform, FillRule, LineCap, LineJoin, BlendMode, Image. There is a current user space, a paint, line
/// settings, a clip, an alpha and a blend mode, all saved and restored by pushState and popState, and likewise by
/// pushTransparencyLayer and popTransparencyLayer. A transparency layer starts with alpha 1 and the normal blend mode,
/// and with all else as it was; it is composited as one with the alpha, blend mode and clip in force around it. A
/// list takes the state as it finds it: what it needs, it sets.
template <typename Types>
struct RendererCommand {
    using Float = typename Types::Float;
    using Point = typename Types::Point;

    struct Concatenate {
        typename Types::Transform transform;
        bool operator==(const Concatenate&) const = default;
    };
    struct Translate {
        Float tx, ty;
        bool operator==(const Translate&) const = default;
    };
    struct Rotate {
        Float angle;  ///< radians
        bool operator==(const Rotate&) const = default;
    };
    struct Scale {
        Float sx, sy;
        bool operator==(const Scale&) const = default;
    };
    struct SetFill {
        typename Types::Color color;
        bool operator==(const SetFill&) const = default;
    };
    struct SetFillPattern {
        typename Types::Pattern pattern;
        bool operator==(const SetFillPattern&) const = default;
    };
    struct SetStroke {
        typename Types::Color color;
        bool operator==(const SetStroke&) const = default;
    };
    struct SetLine {
        Float width;
        bool operator==(const SetLine&) const = default;
    };
    struct SetLineCap {
        typename Types::LineCap cap;
        bool operator==(const SetLineCap&) const = default;
    };
    struct SetLineJoin {
        typename Types::LineJoin join;
        bool operator==(const SetLineJoin&) const = default;
    };
    struct SetLineMiter {
        Float limit;
        bool operator==(const SetLineMiter&) const = default;
    };
    struct SetClip {
        typename Types::Path path;
        typename Types::FillRule rule;
        bool operator==(const SetClip&) const = default;
    };
    struct SetAlpha {
        Float alpha;
        bool operator==(const SetAlpha&) const = default;
    };
    struct SetBlend {
        typename Types::BlendMode mode;
        bool operator==(const SetBlend&) const = default;
    };
    struct Stroke {
        typename Types::Path path;
        bool operator==(const Stroke&) const = default;
    };
    struct ClipStrokeOutline {
        typename Types::Path path;
        bool operator==(const ClipStrokeOutline&) const = default;
    };
    struct Fill {
        typename Types::Path path;
        typename Types::FillRule rule;
        bool operator==(const Fill&) const = default;
    };
    struct Draw {
        typename Types::Image image;
        typename Types::Rect in;
        bool operator==(const Draw&) const = default;
    };
    struct DrawLinearGradient {
        typename Types::Gradient gradient;
        Point from, to;
        bool operator==(const DrawLinearGradient&) const = default;
    };
    struct DrawRadialGradient {
        struct Circles {
            Point startCenter;
            Float startRadius;
            Point endCenter;
            Float endRadius;
            bool operator==(const Circles&) const = default;
        };
        typename Types::Gradient gradient;
        Boxed<Circles> circles;  ///< never absent; boxed since rare and larger than all other arguments
        bool operator==(const DrawRadialGradient&) const = default;
    };
    struct PushState {
        bool operator==(const PushState&) const = default;
    };
    struct PopState {
        bool operator==(const PopState&) const = default;
    };
    struct PushTransparencyLayer {
        bool operator==(const PushTransparencyLayer&) const = default;
    };
    struct PopTransparencyLayer {
        bool operator==(const PopTransparencyLayer&) const = default;
    };

    std::variant<Concatenate, Translate, Rotate, Scale, SetFill, SetFillPattern, SetStroke, SetLine, SetLineCap,
                 SetLineJoin, SetLineMiter, SetClip, SetAlpha, SetBlend, Stroke, ClipStrokeOutline, Fill, Draw,
                 DrawLinearGradient, DrawRadialGradient, PushState, PopState, PushTransparencyLayer,
                 PopTransparencyLayer>
        value;
    bool operator==(const RendererCommand&) const = default;
};

template <typename Types>
using CommandList = std::vector<RendererCommand<Types>>;

}  // namespace sorvik::draw
