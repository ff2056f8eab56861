#include "sorvikdraw/engine/cg_shapes.h"

#include <algorithm>
#include <cmath>
#include <variant>
#include <vector>

namespace sorvik::draw {
namespace {

using layer_tree::PathSegment;
using layer_tree::Point;
using layer_tree::Rect;
using layer_tree::Shape;

constexpr float circleControl = 0.5522847498F;  // of a quarter, as part of the radius

// A quarter of an ellipse, from the path's end to `to`, bending towards `corner`.
void turn(CGPath& path, Point from, Point corner, Point to) {
    const auto between = [](Point a, Point b) {
        return Point{a.x + (b.x - a.x) * circleControl, a.y + (b.y - a.y) * circleControl};
    };
    path.cubic(to, between(from, corner), between(to, corner));
}

void addPolyline(CGPath& path, const std::vector<Point>& points) {
    path.move(points.front());
    for (auto point = points.begin() + 1; point != points.end(); ++point) {
        path.line(*point);
    }
}

CGPath polyline(const std::vector<Point>& points, bool isClosed) {
    CGPath path;
    if (!points.empty()) {
        path.reserve(points.size(), points.size() + (isClosed ? 1 : 0));
        addPolyline(path, points);
        if (isClosed) {
            path.close();
        }
    }
    return path;
}

CGPath plainRectangle(const Rect& rect) {
    const auto [x, y] = rect.origin;
    const auto [width, height] = rect.size;
    return polyline({{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}}, true);
}

CGPath roundedRectangle(const Rect& rect, float rx, float ry) {
    const float left = rect.origin.x;
    const float top = rect.origin.y;
    const float right = left + rect.size.width;
    const float bottom = top + rect.size.height;
    CGPath path;
    path.reserve(1 + 4 * 4, 1 + 2 * 4 + 1);
    path.move({left + rx, top});
    path.line({right - rx, top});
    turn(path, {right - rx, top}, {right, top}, {right, top + ry});
    path.line({right, bottom - ry});
    turn(path, {right, bottom - ry}, {right, bottom}, {right - rx, bottom});
    path.line({left + rx, bottom});
    turn(path, {left + rx, bottom}, {left, bottom}, {left, bottom - ry});
    path.line({left, top + ry});
    turn(path, {left, top + ry}, {left, top}, {left + rx, top});
    path.close();
    return path;
}

CGPath ellipse(const Rect& rect) {
    const float left = rect.origin.x;
    const float top = rect.origin.y;
    const float right = left + rect.size.width;
    const float bottom = top + rect.size.height;
    const float x = left + rect.size.width / 2;
    const float y = top + rect.size.height / 2;
    CGPath path;
    path.reserve(1 + 3 * 4, 1 + 4 + 1);
    path.move({right, y});
    turn(path, {right, y}, {right, bottom}, {x, bottom});
    turn(path, {x, bottom}, {left, bottom}, {left, y});
    turn(path, {left, y}, {left, top}, {x, top});
    turn(path, {x, top}, {right, top}, {right, y});
    path.close();
    return path;
}

struct AddSegment {
    CGPath& path;

    void operator()(const PathSegment::Move& move) const { path.move(move.to); }
    void operator()(const PathSegment::Line& line) const { path.line(line.to); }
    void operator()(const PathSegment::Cubic& cubic) const { path.cubic(cubic.to, cubic.control1, cubic.control2); }
    void operator()(const PathSegment::Close&) const { path.close(); }
};

struct MakePath {
    CGPath operator()(const Shape::Line& line) const { return polyline(line.between, false); }
    CGPath operator()(const Shape::Polygon& polygon) const { return polyline(polygon.between, true); }
    CGPath operator()(const Shape::Ellipse& shape) const { return ellipse(shape.within); }

    CGPath operator()(const Shape::Rectangle& rectangle) const {
        const Rect& rect = rectangle.within;
        const float rx = std::min(rectangle.radii.width, std::abs(rect.size.width) / 2);
        const float ry = std::min(rectangle.radii.height, std::abs(rect.size.height) / 2);
        return rx > 0 && ry > 0 ? roundedRectangle(rect, rx, ry) : plainRectangle(rect);
    }

    CGPath operator()(const layer_tree::Path& shape) const {
        CGPath path;
        for (const PathSegment& segment : shape.segments) {
            std::visit(AddSegment{path}, segment.value);
        }
        path.shrink();
        return path;
    }
};

}  // namespace

CGPath makePath(const Shape& shape) { return std::visit(MakePath{}, shape.value); }

}  // namespace sorvik::draw
