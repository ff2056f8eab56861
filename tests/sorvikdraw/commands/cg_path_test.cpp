#include "sorvikdraw/engine/cg_path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "sorvikdraw/engine/cg_shapes.h"

namespace sorvik::draw {
namespace {

using layer_tree::Matrix;
using layer_tree::PathSegment;
using layer_tree::Point;
using layer_tree::Rect;
using layer_tree::Shape;
using ::testing::ElementsAre;
using Verb = CGPath::Verb;

CGPath cubic(Point from, Point control1, Point control2, Point to) {
    CGPath path;
    path.move(from);
    path.cubic(to, control1, control2);
    return path;
}

// The furthest points of very many on the curve.
Rect sampledBounds(const CGPath& path) {
    const auto p = path.points();
    Point low = p[0];
    Point high = p[0];
    constexpr int steps = 20'000;
    for (int i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        const double u = 1 - t;
        const auto at = [&](float a, float b, float c, float d) {
            return static_cast<float>(u * u * u * static_cast<double>(a) + 3 * u * u * t * static_cast<double>(b) +
                                      3 * u * t * t * static_cast<double>(c) + t * t * t * static_cast<double>(d));
        };
        const Point on{at(p[0].x, p[1].x, p[2].x, p[3].x), at(p[0].y, p[1].y, p[2].y, p[3].y)};
        low = {std::min(low.x, on.x), std::min(low.y, on.y)};
        high = {std::max(high.x, on.x), std::max(high.y, on.y)};
    }
    return {low, {high.x - low.x, high.y - low.y}};
}

void expectNear(const Rect& actual, const Rect& expected, float tolerance) {
    EXPECT_NEAR(actual.origin.x, expected.origin.x, tolerance);
    EXPECT_NEAR(actual.origin.y, expected.origin.y, tolerance);
    EXPECT_NEAR(actual.size.width, expected.size.width, tolerance);
    EXPECT_NEAR(actual.size.height, expected.size.height, tolerance);
}

TEST(CGPath, KeepsItsContentsWhileItGrowsIsCopiedAndShrinks) {
    CGPath path;
    for (int i = 0; i < 100; ++i) {
        const auto x = static_cast<float>(i);
        path.move({x, 0});
        path.line({x, 1});
        path.cubic({x, 4}, {x, 2}, {x, 3});
        path.close();
    }
    const CGPath copy = path;
    path.shrink();
    EXPECT_EQ(path, copy);
    ASSERT_EQ(path.verbs().size(), 400U);
    ASSERT_EQ(path.points().size(), 500U);
    EXPECT_THAT(path.verbs().last(4), ElementsAre(Verb::move, Verb::line, Verb::cubic, Verb::close));
    EXPECT_THAT(path.points().last(5),
                ElementsAre(Point{99, 0}, Point{99, 1}, Point{99, 2}, Point{99, 3}, Point{99, 4}));
    const CGPath taken = std::move(path);
    EXPECT_EQ(taken, copy);
    EXPECT_NE(taken, CGPath());
}

TEST(CGPath, AppendedPathsAreTransformed) {
    CGPath path = cubic({1, 2}, {3, 4}, {5, 6}, {7, 8});
    path.append(path, Matrix{2, 0, 1, -1, 10, 20});
    EXPECT_THAT(path.verbs(), ElementsAre(Verb::move, Verb::cubic, Verb::move, Verb::cubic));
    EXPECT_THAT(path.points().last(4), ElementsAre(Point{14, 18}, Point{20, 16}, Point{26, 14}, Point{32, 12}));
}

TEST(CGPath, BoundsFollowTheCurve) {
    const CGPath cases[] = {
        cubic({0, 0}, {0, 10}, {10, 10}, {10, 0}),      cubic({0, 0}, {30, 5}, {-20, 5}, {10, 10}),
        cubic({0, 0}, {5, 0}, {5, 0}, {5, 10}),         cubic({0, 0}, {1, 1}, {2, 2}, {3, 3}),
        cubic({5, 5}, {-90, 5}, {-90, 5}, {5, 5}),      cubic({1000, 1}, {1001, 400}, {999, -300}, {1000, 0}),
        cubic({0, 0}, {0, 1e-3F}, {0, -1e-3F}, {0, 0}),
    };
    for (const CGPath& path : cases) {
        SCOPED_TRACE(path.points()[1].x);
        expectNear(path.bounds(), sampledBounds(path), 1e-3F);
    }
}

TEST(CGPath, BoundsOfOtherPaths) {
    EXPECT_EQ(CGPath().bounds(), Rect{});
    CGPath lines;
    lines.move({3, 4});
    lines.line({-1, 6});
    lines.close();
    EXPECT_EQ(lines.bounds(), (Rect{{-1, 4}, {4, 2}}));
    // After a close the curve starts where the subpath did.
    lines.cubic({3, 4}, {3, 14}, {3, 14});
    EXPECT_FLOAT_EQ(lines.bounds().size.height, 7.5F);
    CGPath broken;
    broken.move({NAN, NAN});
    EXPECT_EQ(broken.bounds(), Rect{});
}

// MARK: shapes

float distanceFromEllipse(const Rect& within, Point p) {
    const float rx = within.size.width / 2;
    const float ry = within.size.height / 2;
    return std::hypot((p.x - within.origin.x - rx) / rx, (p.y - within.origin.y - ry) / ry) - 1;
}

TEST(CGShapes, PolylinesStayOpenAndPolygonsClose) {
    const std::vector<Point> points{{1, 2}, {3, 4}, {5, 6}};
    const CGPath open = makePath({Shape::Line{points}});
    EXPECT_THAT(open.verbs(), ElementsAre(Verb::move, Verb::line, Verb::line));
    const CGPath closed = makePath({Shape::Polygon{points}});
    EXPECT_THAT(closed.verbs(), ElementsAre(Verb::move, Verb::line, Verb::line, Verb::close));
    EXPECT_THAT(closed.points(), ::testing::ElementsAreArray(points));
    EXPECT_TRUE(makePath({Shape::Polygon{}}).empty());
    EXPECT_TRUE(makePath({Shape::Line{}}).empty());
}

TEST(CGShapes, PathsAreTakenAsTheyStand) {
    const CGPath path = makePath({layer_tree::Path{{{PathSegment::Move{{1, 2}}},
                                                    {PathSegment::Cubic{{7, 8}, {3, 4}, {5, 6}}},
                                                    {PathSegment::Close{}},
                                                    {PathSegment::Line{{9, 10}}}}}});
    EXPECT_THAT(path.verbs(), ElementsAre(Verb::move, Verb::cubic, Verb::close, Verb::line));
    EXPECT_THAT(path.points(), ElementsAre(Point{1, 2}, Point{3, 4}, Point{5, 6}, Point{7, 8}, Point{9, 10}));
}

TEST(CGShapes, EllipsesAreRound) {
    const Rect within{{10, 20}, {60, 30}};
    const CGPath path = makePath({Shape::Ellipse{within}});
    EXPECT_EQ(path.bounds(), within);
    ASSERT_THAT(path.verbs(), ElementsAre(Verb::move, Verb::cubic, Verb::cubic, Verb::cubic, Verb::cubic, Verb::close));
    for (std::size_t start = 0; start + 3 < path.points().size(); start += 3) {
        const auto p = path.points().subspan(start, 4);
        const Point middle{(p[0].x + 3 * p[1].x + 3 * p[2].x + p[3].x) / 8,
                           (p[0].y + 3 * p[1].y + 3 * p[2].y + p[3].y) / 8};
        EXPECT_NEAR(distanceFromEllipse(within, middle), 0, 3e-4F);
    }
}

TEST(CGShapes, CornersAreRoundedByHalfASideAtMost) {
    const Rect within{{10, 20}, {60, 30}};
    const CGPath plain = makePath({Shape::Rectangle{within, {}}});
    EXPECT_THAT(plain.points(), ElementsAre(Point{10, 20}, Point{70, 20}, Point{70, 50}, Point{10, 50}));
    for (const layer_tree::Size radii : {layer_tree::Size{0, 5}, layer_tree::Size{5, 0}, layer_tree::Size{-1, -1}}) {
        EXPECT_EQ(makePath({Shape::Rectangle{within, radii}}), plain);
    }
    const CGPath rounded = makePath({Shape::Rectangle{within, {6, 4}}});
    EXPECT_THAT(rounded.verbs(), ElementsAre(Verb::move, Verb::line, Verb::cubic, Verb::line, Verb::cubic, Verb::line,
                                             Verb::cubic, Verb::line, Verb::cubic, Verb::close));
    EXPECT_EQ(rounded.points().front(), (Point{16, 20}));
    EXPECT_EQ(rounded.points()[4], (Point{70, 24}));
    EXPECT_EQ(rounded.bounds(), within);
    EXPECT_EQ(makePath({Shape::Rectangle{within, {1000, 1000}}}), makePath({Shape::Rectangle{within, {30, 15}}}));
}

}  // namespace
}  // namespace sorvik::draw
