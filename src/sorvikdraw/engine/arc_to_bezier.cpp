#include "sorvikdraw/engine/arc_to_bezier.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "sorvikdraw/engine/affine.h"

// In double: the squares of radii leave the range of floats, and an arc that is short for its radius would end beside
// its end.
namespace sorvik::draw::layer_tree {
namespace {

constexpr double fullTurn = 6.283185;
constexpr double quarterTurn = 1.5707963;
constexpr auto vanishing = static_cast<double>(std::numeric_limits<float>::denorm_min());

struct Radii {
    double x, y;
};

// Angles lie on a circle of radius 1 around 0.
struct CircleArc {
    Affine toEllipse;
    double from, extent;

    [[nodiscard]] Point operator()(double x, double y) const {
        const auto [ellipseX, ellipseY] = toEllipse(x, y);
        return {static_cast<float>(ellipseX), static_cast<float>(ellipseY)};
    }
};

double signedAngle(Vector from, Vector to) {
    const double lengths = std::hypot(from.x, from.y) * std::hypot(to.x, to.y);
    const double cosine = (from.x * to.x + from.y * to.y) / lengths;
    const double angle = std::acos(std::clamp(cosine, -1.0, 1.0));
    return from.x * to.y - from.y * to.x < 0 ? -angle : angle;
}

double extentBetween(Vector from, Vector to, bool sweep) {
    const double extent = signedAngle(from, to);
    if (!sweep && extent > 0) {
        return extent - fullTurn;
    }
    return sweep && extent < 0 ? extent + fullTurn : extent;
}

Radii radiiThatReach(const Arc& arc, Vector half) {
    const Radii radii{std::abs(static_cast<double>(arc.rx)), std::abs(static_cast<double>(arc.ry))};
    const double lambda = half.x * half.x / (radii.x * radii.x) + half.y * half.y / (radii.y * radii.y);
    const double growth = lambda > 1 ? std::sqrt(lambda) : 1;
    return {radii.x * growth, radii.y * growth};
}

// From the middle between start and end, in the frame that is turned with the ellipse.
Vector centerOffset(Radii radii, Vector half, bool isOnOtherSide) {
    const auto [rx, ry] = radii;
    const double reach = rx * rx * half.y * half.y + ry * ry * half.x * half.x;
    const double coefficient = std::sqrt(std::max(0.0, rx * rx * ry * ry - reach) / reach);
    const double side = isOnOtherSide ? -coefficient : coefficient;
    return {side * rx * half.y / ry, -side * ry * half.x / rx};
}

bool vanishes(const Arc& arc, Vector half) {
    return (std::abs(half.x) <= vanishing && std::abs(half.y) <= vanishing) ||
           std::abs(static_cast<double>(arc.rx)) <= vanishing || std::abs(static_cast<double>(arc.ry)) <= vanishing;
}

std::optional<CircleArc> circleArc(const Arc& arc) {
    const Vector start{static_cast<double>(arc.start.x), static_cast<double>(arc.start.y)};
    const Vector end{static_cast<double>(arc.end.x), static_cast<double>(arc.end.y)};
    const double phi = static_cast<double>(arc.rotation) * fullTurn / 360;
    const Vector half = Affine::rotation(-phi)((start.x - end.x) * 0.5, (start.y - end.y) * 0.5);
    if (vanishes(arc, half)) {
        return std::nullopt;
    }
    const Radii radii = radiiThatReach(arc, half);
    const Vector offset = centerOffset(radii, half, arc.large == arc.sweep);
    const Vector from{(half.x - offset.x) / radii.x, (half.y - offset.y) / radii.y};
    const Vector to{(-half.x - offset.x) / radii.x, (-half.y - offset.y) / radii.y};
    const Affine toEllipse = Affine::translation((start.x + end.x) * 0.5, (start.y + end.y) * 0.5) *
                             Affine::rotation(phi) * Affine::translation(offset.x, offset.y) *
                             Affine::scaling(radii.x, radii.y);
    return CircleArc{toEllipse, signedAngle({1, 0}, from), extentBetween(from, to, arc.sweep)};
}

// Beyond the range of floats nothing is finite any more.
bool isDrawable(const CircleArc& arc) {
    const double reach = std::abs(arc.toEllipse.tx) + std::abs(arc.toEllipse.ty) + 2 * arc.toEllipse.stretch().most;
    return arc.toEllipse.isFinite() && std::isfinite(arc.from) && std::isfinite(arc.extent) &&
           reach < static_cast<double>(std::numeric_limits<float>::max());
}

}  // namespace

std::vector<PathSegment::Cubic> arcToBezier(const Arc& arc) {
    std::vector<PathSegment::Cubic> cubics;
    const auto whole = circleArc(arc);
    if (!whole || !isDrawable(*whole)) {
        return cubics;
    }
    const int pieces = static_cast<int>(std::ceil(std::abs(whole->extent) / quarterTurn));
    const double delta = whole->extent / pieces;
    const double t = std::tan(delta * 0.25) * 1.3333334;
    for (int piece = 0; piece < pieces; ++piece) {
        const double a = whole->from + delta * piece;
        const double b = a + delta;
        cubics.push_back({(*whole)(std::cos(b), std::sin(b)),
                          (*whole)(std::cos(a) - t * std::sin(a), std::sin(a) + t * std::cos(a)),
                          (*whole)(std::cos(b) + t * std::sin(b), std::sin(b) - t * std::cos(b))});
    }
    return cubics;
}

}  // namespace sorvik::draw::layer_tree
