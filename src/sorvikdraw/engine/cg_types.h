#pragma once

#include <memory>
#include <vector>

#include "sorvikdraw/engine/cg_path.h"
#include "sorvikdraw/engine/layer_tree.h"
#include "sorvikdraw/engine/renderer_command.h"
#include "sorvikdraw/engine/shared.h"

namespace sorvik::draw {

/// sRGB, straight alpha, each 0 to 1.
struct CGColor {
    float r = 0, g = 0, b = 0, a = 0;
    bool operator==(const CGColor&) const = default;
};

struct CGGradient {
    struct Stop {
        float offset = 0;
        CGColor color;  ///< its alpha multiplied by the stop's opacity
        bool operator==(const Stop&) const = default;
    };
    std::vector<Stop> stops;
    bool operator==(const CGGradient&) const = default;
};

/// An encoded picture whose header has been read; decoded when it is drawn.
struct CGImage {
    layer_tree::Bitmap bitmap;  ///< never without bytes
    int width = 0, height = 0;  ///< pixels
    bool operator==(const CGImage& other) const {
        return bitmap.format == other.bitmap.format && *bitmap.bytes == *other.bitmap.bytes;
    }
};

struct CGTransformingPattern;

/// The types of the raster and PDF back end. Patterns compare by identity: those that nest would take forever by value.
struct CGTypes {
    using Float = float;
    using Point = layer_tree::Point;
    using Size = layer_tree::Size;
    using Rect = layer_tree::Rect;
    using Color = CGColor;
    using Gradient = Shared<CGGradient>;
    using Path = Shared<CGPath>;
    using Pattern = std::shared_ptr<const CGTransformingPattern>;
    using Transform = layer_tree::Matrix;
    using FillRule = dom::FillRule;
    using LineCap = dom::LineCap;
    using LineJoin = dom::LineJoin;
    using BlendMode = draw::BlendMode;
    using Image = Shared<CGImage>;
};

using CGCommand = RendererCommand<CGTypes>;
using CGCommands = CommandList<CGTypes>;
static_assert(sizeof(CGCommand) <= 40, "a drawing holds a million of them");

/// One tile, drawn in a state of its own, repeated at steps of its size from the origin of the user space in force when
/// something is filled with it.
struct CGTransformingPattern {
    layer_tree::Rect bounds;
    CGCommands contents;
};

}  // namespace sorvik::draw
