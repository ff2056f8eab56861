#include "sorvikdraw/engine/path_conversion.h"

#include <utility>
#include <variant>
#include <vector>

#include "sorvikdraw/engine/arc_to_bezier.h"

namespace sorvik::draw::layer_tree {
namespace {

using Space = dom::PathSegment::CoordinateSpace;

constexpr float twoThirds = 0.6666667F;
constexpr float oneThird = 0.33333334F;

// The point at that part of the way.
Point along(Point from, Point to, float part) {
    return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

class Converter {
public:
    explicit Converter(std::size_t expected) { segments_.reserve(expected); }

    void operator()(const dom::PathSegment::Move& move) {
        current_ = absolute(move.x, move.y, move.space);
        add(PathSegment::Move{current_});
    }
    void operator()(const dom::PathSegment::Line& line) { lineTo(absolute(line.x, line.y, line.space)); }
    void operator()(const dom::PathSegment::Horizontal& line) {
        lineTo({absolute(line.x, 0, line.space).x, current_.y});
    }
    void operator()(const dom::PathSegment::Vertical& line) { lineTo({current_.x, absolute(0, line.y, line.space).y}); }
    void operator()(const dom::PathSegment::Cubic& cubic) {
        cubicTo({absolute(cubic.x, cubic.y, cubic.space), absolute(cubic.x1, cubic.y1, cubic.space),
                 absolute(cubic.x2, cubic.y2, cubic.space)});
    }
    void operator()(const dom::PathSegment::CubicSmooth& cubic) {
        cubicTo(
            {absolute(cubic.x, cubic.y, cubic.space), reflectedControl(), absolute(cubic.x2, cubic.y2, cubic.space)});
    }
    void operator()(const dom::PathSegment::Quadratic& quadratic) {
        const Point control = absolute(quadratic.x1, quadratic.y1, quadratic.space);
        const Point end = absolute(quadratic.x, quadratic.y, quadratic.space);
        cubicTo({end, along(current_, control, twoThirds), along(end, control, twoThirds)});
    }
    void operator()(const dom::PathSegment::QuadraticSmooth& quadratic) {
        const Point control = reflectedControl();
        const Point end = absolute(quadratic.x, quadratic.y, quadratic.space);
        cubicTo(
            {end, control, {control.x + (end.x - current_.x) * oneThird, control.y + (end.y - current_.y) * oneThird}});
    }
    void operator()(const dom::PathSegment::Arc& arc) {
        const Point end = absolute(arc.x, arc.y, arc.space);
        for (const auto& cubic : arcToBezier({current_, end, arc.rx, arc.ry, arc.rotate, arc.large, arc.sweep})) {
            cubicTo(cubic);
        }
    }
    void operator()(const dom::PathSegment::Close&) { add(PathSegment::Close{}); }

    [[nodiscard]] std::vector<PathSegment> take() { return std::move(segments_); }

private:
    [[nodiscard]] Point absolute(float x, float y, Space space) const {
        return space == Space::relative ? Point{current_.x + x, current_.y + y} : Point{x, y};
    }

    // The second control point of the cubic before, mirrored in the current point.
    [[nodiscard]] Point reflectedControl() const {
        const auto* cubic = segments_.empty() ? nullptr : std::get_if<PathSegment::Cubic>(&segments_.back().value);
        return cubic == nullptr ? current_
                                : Point{current_.x + (current_.x - cubic->control2.x),
                                        current_.y + (current_.y - cubic->control2.y)};
    }

    void lineTo(Point to) {
        current_ = to;
        add(PathSegment::Line{to});
    }
    void cubicTo(const PathSegment::Cubic& cubic) {
        current_ = cubic.to;
        add(cubic);
    }
    template <typename Segment>
    void add(const Segment& segment) {
        segments_.push_back(PathSegment{segment});
    }

    std::vector<PathSegment> segments_;
    Point current_;
};

}  // namespace

Path makePath(std::span<const dom::PathSegment> segments) {
    Converter converter(segments.size());
    for (const dom::PathSegment& segment : segments) {
        std::visit(converter, segment.value);
    }
    return Path{converter.take()};
}

}  // namespace sorvik::draw::layer_tree
