#include "sorvikdraw/engine/shape_conversion.h"

#include <utility>
#include <variant>
#include <vector>

#include "sorvikdraw/engine/path_conversion.h"

namespace sorvik::draw::layer_tree {
namespace {

Rect around(float cx, float cy, float rx, float ry) { return {{cx - rx, cy - ry}, {rx * 2, ry * 2}}; }

SharedList<Point> makePoints(const std::vector<dom::Point>& points) {
    std::vector<Point> result;
    result.reserve(points.size());
    for (const auto [x, y] : points) {
        result.push_back({x, y});
    }
    return result;
}

struct ShapeOf {
    using Result = std::optional<Shape>;

    Result operator()(const dom::Line& line) const {
        return Shape{Shape::Line{{Point{line.x1, line.y1}, Point{line.x2, line.y2}}}};
    }
    Result operator()(const dom::Circle& circle) const {
        return Shape{Shape::Ellipse{around(circle.cx.value_or(0), circle.cy.value_or(0), circle.r, circle.r)}};
    }
    Result operator()(const dom::Ellipse& ellipse) const {
        return Shape{Shape::Ellipse{around(ellipse.cx.value_or(0), ellipse.cy.value_or(0), ellipse.rx, ellipse.ry)}};
    }
    Result operator()(const dom::Rect& rect) const {
        const float rx = rect.rx.value_or(rect.ry.value_or(0));
        const float ry = rect.ry.value_or(rect.rx.value_or(0));
        return Shape{Shape::Rectangle{{{rect.x.value_or(0), rect.y.value_or(0)}, {rect.width, rect.height}}, {rx, ry}}};
    }
    Result operator()(const dom::Polyline& polyline) const { return Shape{Shape::Line{makePoints(polyline.points)}}; }
    Result operator()(const dom::Polygon& polygon) const { return Shape{Shape::Polygon{makePoints(polygon.points)}}; }
    Result operator()(const dom::Path& path) const { return Shape{makePath(path.segments)}; }
    Result operator()(const dom::Text&) const { return std::nullopt; }
    Result operator()(const Boxed<dom::Image>&) const { return std::nullopt; }
    Result operator()(const dom::Use&) const { return std::nullopt; }
    Result operator()(const dom::Group&) const { return std::nullopt; }
    Result operator()(const dom::Switch&) const { return std::nullopt; }
    Result operator()(const dom::Anchor&) const { return std::nullopt; }
    Result operator()(const dom::NestedSVG&) const { return std::nullopt; }
};

struct HeapBytes {
    template <typename T>
    static std::size_t of(const SharedList<T>& list) {
        return list.size() * sizeof(T) + sizeof(std::vector<T>) + 2 * sizeof(void*);
    }

    std::size_t operator()(const Shape::Line& line) const { return of(line.between); }
    std::size_t operator()(const Shape::Rectangle&) const { return 0; }
    std::size_t operator()(const Shape::Ellipse&) const { return 0; }
    std::size_t operator()(const Shape::Polygon& polygon) const { return of(polygon.between); }
    std::size_t operator()(const Path& path) const { return of(path.segments); }
};

}  // namespace

std::optional<Shape> makeShape(const dom::GraphicsElement& element) { return std::visit(ShapeOf{}, element.kind); }

std::size_t heapBytes(const Shape& shape) { return std::visit(HeapBytes{}, shape.value); }

}  // namespace sorvik::draw::layer_tree
