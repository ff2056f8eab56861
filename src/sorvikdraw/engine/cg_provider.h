#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sorvikdraw/engine/cg_types.h"
#include "sorvikdraw/engine/layer_tree.h"
#include "sorvikdraw/engine/recent_cache.h"

namespace sorvik::draw {

/// Makes the values of the raster and PDF back end. One for each drawing: it counts what the drawing asks for, and
/// throws LimitError when that is beyond limits.h.
class CGProvider {
public:
    using Types = CGTypes;

    [[nodiscard]] static float createFloat(float number) { return number; }
    [[nodiscard]] static layer_tree::Point createPoint(layer_tree::Point point) { return point; }
    [[nodiscard]] static layer_tree::Rect createRect(const layer_tree::Rect& rect) { return rect; }
    [[nodiscard]] static layer_tree::Matrix createTransform(const layer_tree::Matrix& matrix) { return matrix; }
    [[nodiscard]] static dom::FillRule createFillRule(dom::FillRule rule) { return rule; }
    [[nodiscard]] static dom::LineCap createLineCap(dom::LineCap cap) { return cap; }
    [[nodiscard]] static dom::LineJoin createLineJoin(dom::LineJoin join) { return join; }
    [[nodiscard]] static BlendMode createBlendMode(BlendMode mode) { return mode; }
    [[nodiscard]] static CGColor createColor(const layer_tree::Color& color);
    [[nodiscard]] static CGTypes::Gradient createGradient(const layer_tree::Gradient& gradient);
    [[nodiscard]] static CGTypes::Pattern createPattern(const layer_tree::Rect& frame, CGCommands contents);

    [[nodiscard]] CGTypes::Path createPath(const layer_tree::Shape& shape);
    [[nodiscard]] CGTypes::Path createPath(const std::vector<layer_tree::ClipShape>& clip);
    /// Throws DrawingError when text can't be drawn at all.
    [[nodiscard]] std::optional<CGTypes::Path> createPath(const layer_tree::Layer::TextContents& text);
    [[nodiscard]] std::optional<CGTypes::Image> createImage(const layer_tree::Bitmap& bitmap);

    [[nodiscard]] static layer_tree::Rect bounds(const CGTypes::Path& path) { return path->bounds(); }
    [[nodiscard]] static layer_tree::Size size(const CGTypes::Image& image);
    [[nodiscard]] static constexpr bool supportsTransparentStops() { return true; }

private:
    struct TextKey {
        std::string text, fontName;
        float size;
        bool operator==(const TextKey&) const = default;
    };

    CGTypes::Path counted(CGPath path);

    std::size_t points_ = 0;
    std::int64_t embeddedPixels_ = 0;
    RecentCache<TextKey, CGPath, 64> outlines_;
};

}  // namespace sorvik::draw
