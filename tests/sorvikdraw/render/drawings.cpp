#include "drawings.h"

#include <cstdlib>
#include <utility>

namespace sorvik::draw::testing {
namespace {

CGPath lines(std::initializer_list<layer_tree::Point> points) {
    CGPath path;
    for (const auto point : points) {
        path.empty() ? path.move(point) : path.line(point);
    }
    return path;
}

}  // namespace

CGTypes::Path polygon(std::initializer_list<layer_tree::Point> corners) {
    CGPath path = lines(corners);
    path.close();
    return path;
}

CGTypes::Path rectangle(float x, float y, float width, float height) {
    return polygon({{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}});
}

CGTypes::Path polyline(std::initializer_list<layer_tree::Point> points) { return lines(points); }

CGTypes::Gradient gradient(CGColor first, CGColor last) { return CGGradient{{{0, first}, {1, last}}}; }

CGTypes::Pattern pattern(layer_tree::Rect bounds, std::initializer_list<C> contents) {
    return std::make_shared<const CGTransformingPattern>(CGTransformingPattern{bounds, contents});
}

C fill(CGTypes::Path path) { return command(C::Fill{std::move(path), dom::FillRule::nonzero}); }
C clip(CGTypes::Path path) { return command(C::SetClip{std::move(path), dom::FillRule::nonzero}); }

C matrix(float a, float b, float c, float d, float tx, float ty) {
    return command(C::Concatenate{{a, b, c, d, tx, ty}});
}

C radial(CGTypes::Gradient gradient, C::DrawRadialGradient::Circles circles) {
    return command(C::DrawRadialGradient{std::move(gradient), circles});
}

CGCommands joined(std::initializer_list<CGCommands> lists) {
    CGCommands result;
    for (const auto& list : lists) {
        result.insert(result.end(), list.begin(), list.end());
    }
    return result;
}

Raster drawn(CGCommands commands, int width, int height, int bands) {
    return rasterize(SVG({static_cast<double>(width), static_cast<double>(height)}, std::move(commands)), 1,
                     Background::transparent, bands);
}

bool isNear(std::uint32_t pixel, std::uint32_t expected, int tolerance) {
    for (const unsigned shift : {0U, 8U, 16U, 24U}) {
        const auto channel = [shift](std::uint32_t of) { return static_cast<int>(of >> shift & 0xFFU); };
        if (std::abs(channel(pixel) - channel(expected)) > tolerance) {
            return false;
        }
    }
    return true;
}

std::vector<std::uint32_t> pixelsOf(const Raster& raster) {
    return {raster.row(0), raster.row(0) + static_cast<std::ptrdiff_t>(raster.width()) * raster.height()};
}

}  // namespace sorvik::draw::testing
