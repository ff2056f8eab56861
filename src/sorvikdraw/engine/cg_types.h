#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "sorvikdraw/engine/layer_tree.h"
#include "sorvikdraw/engine/renderer_command.h"

namespace sorvik::draw {

/// A path of absolute lines and cubics, immutable once made and shared by the commands that draw it. Verbs and
/// points lie apart: a move or line takes one point, a cubic three (control, control, end), a close none.
class CGPath {
public:
    enum class Verb : std::uint8_t { move, line, cubic, close };

    void move(layer_tree::Point to);
    void line(layer_tree::Point to);
    void cubic(layer_tree::Point to, layer_tree::Point control1, layer_tree::Point control2);
    void close();
    void append(const CGPath& other, const layer_tree::Matrix& transform);
    /// Gives back what was reserved beyond the contents; to be called once the path is whole.
    void shrink();

    [[nodiscard]] std::span<const Verb> verbs() const { return verbs_; }
    [[nodiscard]] std::span<const layer_tree::Point> points() const { return points_; }
    [[nodiscard]] bool empty() const { return verbs_.empty(); }

    /// Where the curve itself runs, not its control points; an empty path gives an empty rect.
    [[nodiscard]] layer_tree::Rect bounds() const;

    bool operator==(const CGPath&) const = default;

private:
    std::vector<Verb> verbs_;
    std::vector<layer_tree::Point> points_;
};

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
    layer_tree::Bitmap bitmap;
    int width = 0, height = 0;  ///< pixels
    bool operator==(const CGImage& other) const { return bitmap.bytes == other.bitmap.bytes; }
};

struct CGTransformingPattern;

/// The types of the raster and PDF back end.
struct CGTypes {
    using Float = float;
    using Point = layer_tree::Point;
    using Size = layer_tree::Size;
    using Rect = layer_tree::Rect;
    using Color = CGColor;
    using Gradient = std::shared_ptr<const CGGradient>;
    using Path = std::shared_ptr<const CGPath>;
    using Pattern = std::shared_ptr<const CGTransformingPattern>;
    using Transform = layer_tree::Matrix;
    using FillRule = dom::FillRule;
    using LineCap = dom::LineCap;
    using LineJoin = dom::LineJoin;
    using BlendMode = draw::BlendMode;
    using Image = std::shared_ptr<const CGImage>;
};

using CGCommand = RendererCommand<CGTypes>;
using CGCommands = CommandList<CGTypes>;

/// One tile, repeated at steps of its size from the origin of the user space in force when something is filled with it.
struct CGTransformingPattern {
    layer_tree::Rect bounds;
    CGCommands contents;
};

}  // namespace sorvik::draw
