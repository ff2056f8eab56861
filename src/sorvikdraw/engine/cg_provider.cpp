#include "sorvikdraw/engine/cg_provider.h"

#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/bitmap_header.h"
#include "sorvikdraw/engine/cg_shapes.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/p3_color.h"
#include "sorvikdraw/engine/renderer_type_provider.h"
#include "sorvikdraw/engine/text_outlines.h"

namespace sorvik::draw {

static_assert(RendererTypeProvider<CGProvider>);

namespace {

using layer_tree::ClipShape;
using layer_tree::Matrix;

struct MakeColor {
    CGColor operator()(layer_tree::NoColor) const { return {}; }
    CGColor operator()(const layer_tree::RGBA& color) const {
        const layer_tree::RGBA srgb = toSRGB(color);
        return {srgb.r, srgb.g, srgb.b, srgb.a};
    }
    CGColor operator()(const layer_tree::Gray& gray) const {
        return (*this)(layer_tree::RGBA{gray.white, gray.white, gray.white, gray.a});
    }
};

}  // namespace

CGColor CGProvider::createColor(const layer_tree::Color& color) { return std::visit(MakeColor{}, color); }

CGTypes::Gradient CGProvider::createGradient(const layer_tree::Gradient& gradient) {
    CGGradient result;
    result.stops.reserve(gradient.stops.size());
    for (const layer_tree::Gradient::Stop& stop : gradient.stops) {
        CGColor color = createColor(stop.color);
        color.a *= stop.opacity;
        result.stops.push_back({stop.offset, color});
    }
    return std::make_shared<CGGradient>(std::move(result));
}

CGTypes::Pattern CGProvider::createPattern(const layer_tree::Rect& frame, CGCommands contents) {
    return std::make_shared<CGTransformingPattern>(CGTransformingPattern{frame, std::move(contents)});
}

CGTypes::Path CGProvider::createPath(const layer_tree::Shape& shape) { return counted(makePath(shape)); }

CGTypes::Path CGProvider::createPath(const std::vector<ClipShape>& clip) {
    CGPath joined;
    for (const ClipShape& part : clip) {
        joined.append(makePath(part.shape), part.transform);
    }
    joined.shrink();
    return counted(std::move(joined));
}

std::optional<CGTypes::Path> CGProvider::createPath(const layer_tree::Layer::TextContents& text) {
    const TextKey key{text.text, text.attributes.fontName, text.attributes.size};
    const CGPath& outline = outlines_.get(std::hash<std::string_view>{}(key.text), key, [](const TextKey& wanted) {
        return makePath({textOutline(wanted.text, wanted.fontName, wanted.size)});
    });
    if (outline.empty()) {
        return std::nullopt;
    }
    CGPath placed;
    placed.append(outline, Matrix{1, 0, 0, 1, text.at.x, text.at.y});
    return counted(std::move(placed));
}

std::optional<CGTypes::Image> CGProvider::createImage(const layer_tree::Bitmap& bitmap) {
    const std::optional<PixelSize> size = pixelSize(bitmap);
    if (!size) {
        return std::nullopt;
    }
    embeddedPixels_ += std::int64_t{size->width} * size->height;
    if (size->width > limits::side || size->height > limits::side || embeddedPixels_ > limits::embeddedPixels) {
        throw LimitError("the pictures in the document are too large");
    }
    return std::make_shared<CGImage>(CGImage{bitmap, size->width, size->height});
}

layer_tree::Size CGProvider::size(const CGTypes::Image& image) {
    return {static_cast<float>(image->width), static_cast<float>(image->height)};
}

CGTypes::Path CGProvider::counted(CGPath path) {
    points_ += path.points().size();
    if (points_ > limits::drawnPoints) {
        throw LimitError("the drawing has too many points");
    }
    return std::make_shared<CGPath>(std::move(path));
}

}  // namespace sorvik::draw
