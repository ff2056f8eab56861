#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw {

/// A place or a direction, in whatever space its user says.
struct Vector {
    double x = 0, y = 0;
};

/// Maps (x, y) to (a x + c y + tx, b x + d y + ty). In double, since user spaces nest.
struct Affine {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    static Affine of(const layer_tree::Matrix& m) {
        return {static_cast<double>(m.a), static_cast<double>(m.b),  static_cast<double>(m.c),
                static_cast<double>(m.d), static_cast<double>(m.tx), static_cast<double>(m.ty)};
    }
    static Affine translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
    static Affine scaling(double x, double y) { return {x, 0, 0, y, 0, 0}; }
    static Affine rotation(double radians) {
        const double sine = std::sin(radians);
        const double cosine = std::cos(radians);
        return {cosine, sine, -sine, cosine, 0, 0};
    }

    [[nodiscard]] Vector operator()(double x, double y) const { return {a * x + c * y + tx, b * x + d * y + ty}; }
    [[nodiscard]] Vector operator()(layer_tree::Point p) const {
        return (*this)(static_cast<double>(p.x), static_cast<double>(p.y));
    }
    [[nodiscard]] double determinant() const { return a * d - b * c; }
    [[nodiscard]] bool isFinite() const {
        return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d) && std::isfinite(tx) &&
               std::isfinite(ty);
    }
    /// How far a unit is stretched at most and at least.
    struct Stretch {
        double most, least;
    };
    [[nodiscard]] Stretch stretch() const {
        const double sum = std::hypot(a + d, b - c);
        const double difference = std::hypot(a - d, b + c);
        return {(sum + difference) / 2, std::abs(sum - difference) / 2};
    }
    /// False for those that flatten the plane, or nearly so that numbers lose their meaning.
    [[nodiscard]] bool invertible() const {
        const auto [most, least] = stretch();
        return isFinite() && most < 1e12 && least > 1e-12 && least > most * 1e-9 && std::abs(tx) < 1e60 &&
               std::abs(ty) < 1e60;
    }
    /// Of an invertible one.
    [[nodiscard]] Affine inverse() const {
        const double det = determinant();
        return {d / det, -b / det, -c / det, a / det, (c * ty - d * tx) / det, (b * tx - a * ty) / det};
    }
};

/// `inner` first.
[[nodiscard]] inline Affine operator*(const Affine& outer, const Affine& inner) {
    const auto [tx, ty] = outer(inner.tx, inner.ty);
    return {outer.a * inner.a + outer.c * inner.b,
            outer.b * inner.a + outer.d * inner.b,
            outer.a * inner.c + outer.c * inner.d,
            outer.b * inner.c + outer.d * inner.d,
            tx,
            ty};
}

/// Upright, from left and top up to right and bottom. Empty as it is made.
struct Box {
    double left = std::numeric_limits<double>::infinity(), top = left;
    double right = -left, bottom = -left;

    static Box everything() {
        constexpr double far = std::numeric_limits<double>::infinity();
        return {-far, -far, far, far};
    }
    static Box of(const layer_tree::Rect& r) {
        const auto x = static_cast<double>(r.origin.x);
        const auto y = static_cast<double>(r.origin.y);
        return {x, y, x + static_cast<double>(r.size.width), y + static_cast<double>(r.size.height)};
    }

    /// A box may be flat, or hold numbers that are none and be nowhere.
    [[nodiscard]] bool isSomewhere() const { return left <= right && top <= bottom; }
    [[nodiscard]] bool isNowhere() const { return !isSomewhere(); }
    [[nodiscard]] bool hasArea() const { return left < right && top < bottom; }
    [[nodiscard]] double width() const { return right - left; }
    [[nodiscard]] double height() const { return bottom - top; }
    [[nodiscard]] double area() const { return hasArea() ? width() * height() : 0; }
    [[nodiscard]] bool touches(const Box& o) const {
        return left <= o.right && o.left <= right && top <= o.bottom && o.top <= bottom;
    }
    [[nodiscard]] bool isWithin(const Box& o) const {
        return left >= o.left && right <= o.right && top >= o.top && bottom <= o.bottom;
    }
    [[nodiscard]] Box intersected(const Box& o) const {
        return {std::max(left, o.left), std::max(top, o.top), std::min(right, o.right), std::min(bottom, o.bottom)};
    }
    [[nodiscard]] Box grown(double by) const { return {left - by, top - by, right + by, bottom + by}; }
    /// To whole units, outward.
    [[nodiscard]] Box rounded() const {
        return {std::floor(left), std::floor(top), std::ceil(right), std::ceil(bottom)};
    }
    void include(Vector p) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        top = std::min(top, p.y);
        bottom = std::max(bottom, p.y);
    }
    void include(const Box& o) {
        if (!o.isNowhere()) {
            include(Vector{o.left, o.top});
            include(Vector{o.right, o.bottom});
        }
    }
};

/// The upright box around a box, which has an end on each side, turned and stretched.
[[nodiscard]] inline Box operator*(const Affine& m, const Box& box) {
    Box result;
    if (!box.isNowhere()) {
        result.include(m(box.left, box.top));
        result.include(m(box.right, box.top));
        result.include(m(box.left, box.bottom));
        result.include(m(box.right, box.bottom));
    }
    return result;
}

}  // namespace sorvik::draw
