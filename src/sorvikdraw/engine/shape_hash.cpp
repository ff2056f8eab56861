#include "sorvikdraw/engine/shape_hash.h"

#include <bit>
#include <cstdint>

namespace sorvik::draw::layer_tree {
namespace {

constexpr std::size_t fixedLength = 4;  // of a rectangle and an ellipse

struct Length {
    std::size_t operator()(const Shape::Line& line) const { return line.between.size(); }
    std::size_t operator()(const Shape::Rectangle&) const { return fixedLength; }
    std::size_t operator()(const Shape::Ellipse&) const { return fixedLength; }
    std::size_t operator()(const Shape::Polygon& polygon) const { return polygon.between.size(); }
    std::size_t operator()(const Path& path) const { return path.segments.size(); }
};

class Hasher {
public:
    void operator()(const Shape::Line& line) { add(line.between); }
    void operator()(const Shape::Rectangle& rectangle) {
        add(rectangle.within);
        add(rectangle.radii.width);
        add(rectangle.radii.height);
    }
    void operator()(const Shape::Ellipse& ellipse) { add(ellipse.within); }
    void operator()(const Shape::Polygon& polygon) { add(polygon.between); }
    void operator()(const Path& path) {
        for (const PathSegment& segment : path.segments) {
            add(static_cast<std::uint32_t>(segment.value.index()));
            std::visit(*this, segment.value);
        }
    }
    void operator()(const PathSegment::Move& move) { add(move.to); }
    void operator()(const PathSegment::Line& line) { add(line.to); }
    void operator()(const PathSegment::Cubic& cubic) {
        add(cubic.to);
        add(cubic.control1);
        add(cubic.control2);
    }
    void operator()(const PathSegment::Close&) {}

    void add(std::uint32_t word) { state_ = (std::rotl(state_, 5) ^ word) * 0x9E3779B97F4A7C15U; }
    [[nodiscard]] std::size_t value() const { return state_ ^ (state_ >> 32U); }

private:
    void add(float number) { add(std::bit_cast<std::uint32_t>(number)); }
    void add(Point point) {
        add(point.x);
        add(point.y);
    }
    void add(const Rect& rect) {
        add(rect.origin);
        add(rect.size.width);
        add(rect.size.height);
    }
    void add(const std::vector<Point>& points) {
        for (const Point point : points) {
            add(point);
        }
    }

    std::uint64_t state_ = 0;
};

}  // namespace

std::size_t length(const Shape& shape) { return std::visit(Length{}, shape.value); }

std::size_t hash(const Shape& shape) {
    Hasher hasher;
    hasher.add(static_cast<std::uint32_t>(shape.value.index()));
    std::visit([&hasher](const auto& value) { hasher(value); }, shape.value);
    return hasher.value();
}

}  // namespace sorvik::draw::layer_tree
