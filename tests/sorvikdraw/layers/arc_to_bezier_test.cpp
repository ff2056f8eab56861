#include "sorvikdraw/engine/arc_to_bezier.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace sorvik::draw::layer_tree {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

struct Place {
    double x, y;
};

double distance(Place a, Place b) { return std::hypot(a.x - b.x, a.y - b.y); }
Place place(Point p) { return {static_cast<double>(p.x), static_cast<double>(p.y)}; }

// An arc by its ellipse and angles in degrees, from which the ends follow: the way back from what the code is given.
struct ArcCase {
    const char* name;
    Place center;
    double rx, ry, rotation;
    double from, extent;
    double rxGiven = rx, ryGiven = ry;

    [[nodiscard]] Place at(double degrees) const {
        const double angle = degrees * std::numbers::pi / 180;
        const double turn = rotation * std::numbers::pi / 180;
        const double x = rx * std::cos(angle);
        const double y = ry * std::sin(angle);
        return {center.x + x * std::cos(turn) - y * std::sin(turn), center.y + x * std::sin(turn) + y * std::cos(turn)};
    }
    [[nodiscard]] Point point(double degrees) const {
        const auto [x, y] = at(degrees);
        return {static_cast<float>(x), static_cast<float>(y)};
    }
    [[nodiscard]] std::vector<PathSegment::Cubic> cubics() const {
        return arcToBezier({point(from), point(from + extent), static_cast<float>(rxGiven), static_cast<float>(ryGiven),
                            static_cast<float>(rotation), std::abs(extent) > 180, extent > 0});
    }
};

class ArcToBezier : public testing::TestWithParam<ArcCase> {};

Place onCurve(Place start, const PathSegment::Cubic& cubic, double t) {
    const double s = 1 - t;
    const auto mix = [s, t](double a, double b, double c, double d) {
        return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
    };
    const Place one = place(cubic.control1);
    const Place two = place(cubic.control2);
    const Place to = place(cubic.to);
    return {mix(start.x, one.x, two.x, to.x), mix(start.y, one.y, two.y, to.y)};
}

TEST_P(ArcToBezier, FollowsTheEllipseFromStartToEnd) {
    const ArcCase& arc = GetParam();
    const auto cubics = arc.cubics();
    ASSERT_FALSE(cubics.empty());
    EXPECT_LE(cubics.size(), static_cast<std::size_t>(std::ceil(std::abs(arc.extent) / 90)) + 1);
    const double tolerance = std::max(arc.rx, arc.ry) * 4e-4;
    const double step = arc.extent / static_cast<double>(cubics.size());
    Place start = arc.at(arc.from);
    double angle = arc.from;
    for (const auto& cubic : cubics) {
        EXPECT_LT(distance(onCurve(start, cubic, 0.5), arc.at(angle + step / 2)), tolerance);
        start = place(cubic.to);
        angle += step;
        EXPECT_LT(distance(start, arc.at(angle)), tolerance);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ArcToBezier,
                         testing::Values(ArcCase{"Quarter", {50, 50}, 40, 40, 0, 10, 80},
                                         ArcCase{"QuarterBack", {50, 50}, 40, 40, 0, 90, -80},
                                         ArcCase{"ThreeQuarters", {5, -3}, 40, 20, 0, 0, 260},
                                         ArcCase{"ThreeQuartersBackTurned", {5, -3}, 40, 20, 33, 200, -260},
                                         ArcCase{"Half", {0, 0}, 10, 10, 0, 0, 180},
                                         ArcCase{"Thin", {0, 0}, 1000, 0.5, 77, 30, 100},
                                         ArcCase{"ShortOfALargeCircle", {1000, 1000}, 1e5, 1e5, 0, 225, 0.01},
                                         ArcCase{"NegativeRadii", {5, 5}, 40, 20, 15, 0, 100, -40, -20},
                                         ArcCase{"RadiiThatGrow", {5, 5}, 40, 20, 15, 0, 180, 4, 2},
                                         ArcCase{"Huge", {0, 0}, 1e25, 1e25, 0, 0, 120}),
                         [](const auto& row) { return row.param.name; });

TEST(ArcToBezierEnds, ReturnsNothingWhereNothingCanBeDrawn) {
    const Point start{10, 10};
    const Point end{20, 20};
    const Arc arcs[] = {
        {start, end, 0, 5},
        {start, end, 5, 0},
        {start, start, 5, 5},
        {start, end, nan, 5},
        {start, end, infinity, infinity},
        {start, end, 5, 5, infinity},
        {start, {nan, 20}, 5, 5},
        {start, {infinity, 20}, 5, 5},
        {{-3e38F, 0}, {3e38F, 0}, 1, 1},
    };
    for (const Arc& arc : arcs) {
        EXPECT_TRUE(arcToBezier(arc).empty()) << "arc " << &arc - arcs;
    }
}

}  // namespace
}  // namespace sorvik::draw::layer_tree
