#pragma once

#include <concepts>
#include <optional>
#include <utility>
#include <vector>

#include "sorvikdraw/engine/layer_tree.h"
#include "sorvikdraw/engine/renderer_command.h"

namespace sorvik::draw {

/// Makes the values of a back end out of those of the layer tree. It may be asked for the same value again and again.
template <typename Provider, typename Types = typename Provider::Types>
concept RendererTypeProvider =
    requires(Provider& provider, float number, layer_tree::Point point, const layer_tree::Rect& rect,
             const layer_tree::Color& color, const layer_tree::Gradient& gradient, const layer_tree::Matrix& matrix,
             const layer_tree::Shape& shape, const std::vector<layer_tree::ClipShape>& clip,
             const layer_tree::Layer::TextContents& text, const layer_tree::Bitmap& bitmap, CommandList<Types> commands,
             const typename Types::Path& path, const typename Types::Image& image) {
        { provider.createFloat(number) } -> std::same_as<typename Types::Float>;
        { provider.createPoint(point) } -> std::same_as<typename Types::Point>;
        { provider.createRect(rect) } -> std::same_as<typename Types::Rect>;
        { provider.createColor(color) } -> std::same_as<typename Types::Color>;
        { provider.createGradient(gradient) } -> std::same_as<typename Types::Gradient>;
        { provider.createTransform(matrix) } -> std::same_as<typename Types::Transform>;
        { provider.createFillRule(dom::FillRule{}) } -> std::same_as<typename Types::FillRule>;
        { provider.createLineCap(dom::LineCap{}) } -> std::same_as<typename Types::LineCap>;
        { provider.createLineJoin(dom::LineJoin{}) } -> std::same_as<typename Types::LineJoin>;
        { provider.createBlendMode(BlendMode{}) } -> std::same_as<typename Types::BlendMode>;
        { provider.createPattern(rect, std::move(commands)) } -> std::same_as<typename Types::Pattern>;

        { provider.createPath(shape) } -> std::same_as<typename Types::Path>;
        /// All of them as one path.
        { provider.createPath(clip) } -> std::same_as<typename Types::Path>;
        /// The glyphs at their place; absent where nothing is inked.
        { provider.createPath(text) } -> std::same_as<std::optional<typename Types::Path>>;
        /// Absent for a picture that can't be decoded.
        { provider.createImage(bitmap) } -> std::same_as<std::optional<typename Types::Image>>;

        /// Where the curve runs; an empty rect for an empty path.
        { provider.bounds(path) } -> std::same_as<layer_tree::Rect>;
        /// In pixels.
        { provider.size(image) } -> std::same_as<layer_tree::Size>;
        { provider.supportsTransparentStops() } -> std::same_as<bool>;
    };

}  // namespace sorvik::draw
