#include "sorvikdraw/engine/cg_path.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace sorvik::draw {
namespace {

using layer_tree::Matrix;
using layer_tree::Point;
using layer_tree::Rect;

// For small shapes whose size is not known ahead.
constexpr std::size_t smallestRoom = 5;
constexpr std::size_t cubicPoints = 3;

Point transformed(Point p, const Matrix& m) { return {m.a * p.x + m.c * p.y + m.tx, m.b * p.x + m.d * p.y + m.ty}; }

class BoundsBuilder {
public:
    void include(double x, double y) {
        minX_ = std::min(minX_, x);
        maxX_ = std::max(maxX_, x);
        minY_ = std::min(minY_, y);
        maxY_ = std::max(maxY_, y);
    }
    void include(Point p) { include(static_cast<double>(p.x), static_cast<double>(p.y)); }

    // A cubic's ends are included by others; what it adds are the places where it turns.
    void includeTurns(Point from, Point control1, Point control2, Point to) {
        const std::array xs{from.x, control1.x, control2.x, to.x};
        const std::array ys{from.y, control1.y, control2.y, to.y};
        for (const auto* axis : {&xs, &ys}) {
            for (const double t : turns(*axis)) {
                include(at(xs, t), at(ys, t));
            }
        }
    }

    [[nodiscard]] Rect rect() const {
        if (minX_ > maxX_ || minY_ > maxY_) {
            return {};
        }
        return {{static_cast<float>(minX_), static_cast<float>(minY_)},
                {static_cast<float>(maxX_ - minX_), static_cast<float>(maxY_ - minY_)}};
    }

private:
    using Axis = std::array<float, 4>;

    static double at(const Axis& axis, double t) {
        const double u = 1 - t;
        const auto [p0, p1, p2, p3] = axis;
        return u * u * u * static_cast<double>(p0) + 3 * u * u * t * static_cast<double>(p1) +
               3 * u * t * t * static_cast<double>(p2) + t * t * t * static_cast<double>(p3);
    }

    // Where the derivative, a t^2 + 2 b t + c but for a factor, is zero within the curve; 0 stands for nowhere.
    static std::array<double, 2> turns(const Axis& axis) {
        const auto [low, high] = std::minmax(axis[0], axis[3]);
        if (axis[1] >= low && axis[1] <= high && axis[2] >= low && axis[2] <= high) {
            return {};
        }
        const auto p0 = static_cast<double>(axis[0]);
        const auto p1 = static_cast<double>(axis[1]);
        const auto p2 = static_cast<double>(axis[2]);
        const auto p3 = static_cast<double>(axis[3]);
        const double a = p3 - 3 * p2 + 3 * p1 - p0;
        const double b = p2 - 2 * p1 + p0;
        const double c = p1 - p0;
        const double discriminant = b * b - a * c;
        if (!(discriminant >= 0)) {
            return {};
        }
        // The form that does not cancel, and that holds for a straight derivative too.
        const double q = -(b + std::copysign(std::sqrt(discriminant), b));
        return {within(q / a), within(c / q)};
    }

    static double within(double t) { return t > 0 && t < 1 ? t : 0; }

    static constexpr double infinity = std::numeric_limits<double>::infinity();
    double minX_ = infinity, minY_ = infinity;
    double maxX_ = -infinity, maxY_ = -infinity;
};

}  // namespace

CGPath::CGPath(const CGPath& other) { append(other, Matrix{}); }

CGPath& CGPath::operator=(CGPath other) noexcept {
    swap(other);
    return *this;
}

void CGPath::move(Point to) {
    begin(Verb::move, 1);
    add(to);
}

void CGPath::line(Point to) {
    begin(Verb::line, 1);
    add(to);
}

void CGPath::cubic(Point to, Point control1, Point control2) {
    begin(Verb::cubic, cubicPoints);
    add(control1);
    add(control2);
    add(to);
}

void CGPath::close() { begin(Verb::close, 0); }

void CGPath::append(const CGPath& other, const Matrix& transform) {
    const std::size_t points = other.pointCount_;
    const std::size_t verbs = other.verbCount_;
    makeRoom(points, verbs);
    std::copy_n(other.verbData(), verbs, verbData() + verbCount_);
    std::transform(other.pointData(), other.pointData() + points, pointData() + pointCount_,
                   [&transform](Point p) { return transformed(p, transform); });
    pointCount_ += static_cast<std::uint32_t>(points);
    verbCount_ += static_cast<std::uint32_t>(verbs);
}

void CGPath::reserve(std::size_t points, std::size_t verbs) {
    if (points > pointRoom_ || verbs > verbRoom_) {
        reallocate(std::max<std::size_t>(points, pointRoom_), std::max<std::size_t>(verbs, verbRoom_));
    }
}

void CGPath::shrink() {
    if (pointRoom_ > pointCount_ || verbRoom_ > verbCount_) {
        reallocate(pointCount_, verbCount_);
    }
}

std::span<const CGPath::Verb> CGPath::verbs() const { return {verbData(), verbCount_}; }

std::span<const Point> CGPath::points() const { return {pointData(), pointCount_}; }

Rect CGPath::bounds() const {
    BoundsBuilder builder;
    const Point* next = pointData();
    Point current;
    Point start;
    for (const Verb verb : verbs()) {
        switch (verb) {
            case Verb::move:
                start = current = *next++;
                builder.include(current);
                break;
            case Verb::line:
                current = *next++;
                builder.include(current);
                break;
            case Verb::cubic:
                builder.includeTurns(current, next[0], next[1], next[2]);
                current = next[2];
                builder.include(current);
                next += cubicPoints;
                break;
            case Verb::close:
                current = start;
                break;
        }
    }
    return builder.rect();
}

bool CGPath::operator==(const CGPath& other) const {
    return std::ranges::equal(verbs(), other.verbs()) && std::ranges::equal(points(), other.points());
}

void CGPath::swap(CGPath& other) noexcept {
    std::swap(storage_, other.storage_);
    std::swap(pointCount_, other.pointCount_);
    std::swap(verbCount_, other.verbCount_);
    std::swap(pointRoom_, other.pointRoom_);
    std::swap(verbRoom_, other.verbRoom_);
}

void CGPath::reallocate(std::size_t points, std::size_t verbs) {
    auto storage = std::make_unique_for_overwrite<std::byte[]>(points * sizeof(Point) + verbs * sizeof(Verb));
    if (!empty()) {
        std::memcpy(storage.get(), pointData(), pointCount_ * sizeof(Point));
        std::memcpy(storage.get() + points * sizeof(Point), verbData(), verbCount_ * sizeof(Verb));
    }
    storage_ = std::move(storage);
    pointRoom_ = static_cast<std::uint32_t>(points);
    verbRoom_ = static_cast<std::uint32_t>(verbs);
}

// Exactly that much for the first that come.
void CGPath::makeRoom(std::size_t points, std::size_t verbs) {
    const std::size_t wantedPoints = pointCount_ + points;
    const std::size_t wantedVerbs = verbCount_ + verbs;
    if (wantedPoints > pointRoom_ || wantedVerbs > verbRoom_) {
        reallocate(std::max(wantedPoints, std::size_t{2} * pointCount_),
                   std::max(wantedVerbs, std::size_t{2} * verbCount_));
    }
}

void CGPath::begin(Verb verb, std::size_t points) {
    if (pointRoom_ == 0) {
        reserve(smallestRoom, smallestRoom);
    }
    makeRoom(points, 1);
    verbData()[verbCount_++] = verb;
}

Point* CGPath::pointData() const { return reinterpret_cast<Point*>(storage_.get()); }

CGPath::Verb* CGPath::verbData() const { return reinterpret_cast<Verb*>(storage_.get() + pointRoom_ * sizeof(Point)); }

}  // namespace sorvik::draw
