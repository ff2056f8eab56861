#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "drawings.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/stroke_pieces.h"

namespace sorvik::draw::testing {
namespace {

constexpr float none = std::numeric_limits<float>::quiet_NaN();
constexpr float endless = std::numeric_limits<float>::infinity();

const CGTypes::Path canvas = rectangle(0, 0, 40, 40);
const C dot = fill(rectangle(1, 1, 2, 2));
const CGTypes::Gradient redToBlue = gradient(red, blue);
const CGTypes::Pattern checks = pattern({{0, 0}, {4, 4}}, {setFill(red), fill(rectangle(0, 0, 2, 2))});

struct Case {
    std::string name;
    CGCommands commands;
    bool draws = false;  ///< anything but the dot that is drawn after it, in red
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Hostile : public ::testing::TestWithParam<Case> {};

// A context that a drawing has poisoned draws nothing more.
TEST_P(Hostile, LeavesTheRestAlone) {
    const CGCommands commands =
        joined({{push, setFill(blue), setStroke(blue)}, GetParam().commands, {pop, setFill(red), dot}});
    const Raster raster = drawn(commands, 40, 40);
    EXPECT_EQ(raster.row(1)[1], redPixel);
    bool draws = false;
    for (const std::uint32_t pixel : pixelsOf(raster)) {
        draws = draws || (pixel != 0 && pixel != redPixel);
    }
    EXPECT_EQ(draws, GetParam().draws);
    EXPECT_FALSE(SVG({40, 40}, commands).pdfData().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, Hostile,
    ::testing::Values(
        Case{"PointsThatAreNone",
             {fill(polygon({{none, 0}, {40, 0}, {40, 40}})), stroke(polyline({{0, 0}, {endless, 40}})), push,
              clip(polygon({{0, none}, {1, 1}})), fill(canvas), pop}},
        Case{"FlatSpaces",
             {push, scale(1, 0), fill(canvas), stroke(canvas), clip(canvas), linear(redToBlue, {0, 0}, {1, 1}),
              fill(canvas), pop, push, matrix(1, 1, 1, 1, 0, 0), command(C::SetFillPattern{checks}), fill(canvas),
              pushLayer, fill(canvas), popLayer, pop}},
        Case{"SpacesWithoutNumbers",
             {push,
              matrix(none, 0, 0, 1, 0, 0),
              fill(canvas),
              stroke(canvas),
              pop,
              push,
              translate(endless, 0),
              fill(canvas),
              pushLayer,
              stroke(canvas),
              popLayer,
              pop,
              push,
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              scale(3e38F, 3e38F),
              fill(canvas),
              pop}},
        Case{"NearlyFlatPens",
             {push, scale(1e4F, 1e-6F), setLine(1), stroke(polyline({{0, 0}, {1, 1e6F}, {0, 1e7F}})), pop}},
        Case{"LinesWithoutWidth",
             {setLine(0), stroke(canvas), setLine(-5), stroke(canvas), setLine(none), stroke(canvas),
              clipStroke(canvas), fill(canvas)}},
        Case{"EndlessLines", {setLine(endless), stroke(canvas), clipStroke(canvas), fill(canvas)}},
        Case{"GradientsWithoutNumbers",
             {linear(redToBlue, {none, 0}, {1, 1}), linear(CGGradient{}, {0, 0}, {1, 1}),
              radial(redToBlue, {{none, 0}, 0, {0, 0}, 1}), linear(redToBlue, {0, 0}, {1e30F, 1})}},
        Case{"PatternsWithoutExtent",
             {command(C::SetFillPattern{pattern({{0, 0}, {0, 4}}, {fill(canvas)})}), fill(canvas),
              command(C::SetFillPattern{pattern({{0, 0}, {none, 4}}, {fill(canvas)})}), fill(canvas)}},
        Case{"TinyTiles",
             {command(C::SetFillPattern{pattern({{0, 0}, {1e-6F, 1e-6F}}, {setFill(green), fill(canvas)})}),
              fill(canvas)},
             true},
        Case{"LongThinTiles",
             {command(C::SetFillPattern{
                  pattern({{0, 0}, {1e9F, 1e-3F}}, {setFill(green), fill(rectangle(0, 0, 1e9F, 1))})}),
              fill(canvas)},
             true},
        Case{"PicturesInNoRect",
             {command(C::Draw{CGImage{}, {{0, 0}, {none, 10}}}), command(C::Draw{CGImage{}, {{0, 0}, {10, 10}}})}}),
    [](const auto& of) { return of.param.name; });

struct Probe {
    int x, y;
    std::uint32_t pixel;
};
struct FarCase {
    std::string name;
    CGCommands commands;
    std::vector<Probe> probes;
};
void PrintTo(const FarCase& c, std::ostream* out) { *out << c.name; }

class FarAway : public ::testing::TestWithParam<FarCase> {};

TEST_P(FarAway, PathsLookAsTheyShould) {
    const Raster raster = drawn(joined({{setFill(red), setStroke(red)}, GetParam().commands}), 40, 40);
    for (const auto& [x, y, pixel] : GetParam().probes) {
        EXPECT_EQ(raster.row(y)[x], pixel) << x << ", " << y;
    }
}

C cubic(layer_tree::Point from, layer_tree::Point c1, layer_tree::Point c2, layer_tree::Point to) {
    CGPath path;
    path.move(from);
    path.cubic(to, c1, c2);
    return fill(path);
}

INSTANTIATE_TEST_SUITE_P(
    Off, FarAway,
    ::testing::Values(
        FarCase{"Around", {fill(rectangle(-1e9F, -1e9F, 2e9F, 2e9F))}, {{0, 0, redPixel}, {39, 39, redPixel}}},
        FarCase{"AroundAtTheEndOfNumbers",
                {fill(rectangle(-1e38F, -1e38F, 2e38F, 2e38F))},
                {{0, 0, redPixel}, {39, 39, redPixel}}},
        FarCase{"HalfPlane",
                {fill(polygon({{20, -1e8F}, {1e8F, -1e8F}, {1e8F, 1e8F}, {20, 1e8F}}))},
                {{19, 5, 0}, {20, 5, redPixel}, {39, 39, redPixel}}},
        FarCase{"Diagonal",
                {fill(polygon({{-1e8F, -1e8F}, {1e8F, 1e8F}, {-1e8F, 1e8F}}))},
                {{10, 20, redPixel}, {20, 10, 0}, {38, 36, 0}, {36, 38, redPixel}}},
        FarCase{"WoundTwiceTheOtherWay",
                {fill(polygon({{-1e9F, -1e9F},
                               {1e9F, -1e9F},
                               {1e9F, 1e9F},
                               {-1e9F, 1e9F},
                               {-1e9F, -1e9F},
                               {10, 10},
                               {10, 30},
                               {30, 30},
                               {30, 10},
                               {10, 10}}))},
                {{5, 5, redPixel}, {20, 20, 0}}},
        FarCase{"Beside",
                {fill(polygon({{1e8F, 0}, {2e8F, 0}, {2e8F, 40}})), stroke(polyline({{-1e9F, 100}, {1e9F, 100}}))},
                {{20, 20, 0}}},
        FarCase{"Line",
                {setLine(4), stroke(polyline({{-1e9F, 20}, {1e9F, 20}}))},
                {{0, 18, redPixel}, {39, 21, redPixel}, {20, 17, 0}, {20, 22, 0}}},
        FarCase{"LineFromHere",
                {setLine(4), stroke(polyline({{20, 20}, {20, 1e20F}}))},
                {{20, 19, 0}, {19, 20, redPixel}, {20, 39, redPixel}, {17, 30, 0}}},
        FarCase{"Curve",
                {cubic({0, 0}, {0, 3e9F}, {40, 3e9F}, {40, 0})},
                {{1, 30, redPixel}, {38, 30, redPixel}, {20, 39, redPixel}}},
        FarCase{"WidePen",
                {setLine(1e7F), stroke(polyline({{-1e4F, -3e6F}, {-1e4F, 3e6F}}))},
                {{0, 0, redPixel}, {39, 39, redPixel}}},
        FarCase{"FarSpace",
                {scale(1e6F, 1e6F), translate(-5000, -5000), fill(rectangle(0, 0, 5000.00002F, 6000))},
                {{0, 20, 0}}}),
    [](const auto& of) { return of.param.name; });

TEST(StrokePieces, LookLikeTheWhole) {
    CGPath path;
    for (int part = 0; part < 3; ++part) {
        const auto at = [part](int i) {
            return layer_tree::Point{static_cast<float>(10 + i * 31 % 170),
                                     static_cast<float>(20 + (i * 47 + part * 60) % 160)};
        };
        path.move(at(0));
        for (int i = 1; i < 12; ++i) {
            i % 3 == 0 ? path.cubic(at(i), at(i + 2), at(i + 5)) : path.line(at(i));
        }
        if (part != 1) {
            path.close();
        }
    }
    const LineStyle line{6, dom::LineCap::butt, dom::LineJoin::miter, 4};
    CGCommands pieces{setLine(6), command(C::SetLineMiter{4})};
    const CGCommands whole = joined({pieces, {stroke(path)}});
    forEachStrokePiece(path, {}, line, {0, 0, 200, 200}, 5000,
                       [&](const CGPath& piece) { pieces.push_back(stroke(piece)); });
    EXPECT_GT(pieces.size(), 10U);
    const Raster one = drawn(whole, 200, 200);
    const Raster many = drawn(pieces, 200, 200);
    int differences = 0;
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 200; ++x) {
            // Where pieces meet, soft edges lie over each other.
            differences += isNear(one.row(y)[x], many.row(y)[x], 100) ? 0 : 1;
        }
    }
    EXPECT_LT(differences, 5);
}

TEST(Limits, EndDrawingsThatNeedTooMuch) {
    CGCommands layers;
    for (int i = 0; i < 200; ++i) {
        layers = joined({{pushLayer}, layers, {fill(rectangle(0, 0, 1000, 1000)), popLayer}});
    }
    EXPECT_THROW((void)drawn(layers, 1000, 1000), LimitError);
    EXPECT_FALSE(SVG({1000, 1000}, layers).pdfData().empty());

    CGPath path;
    for (int i = 0; i < 200'000; ++i) {
        path.line({static_cast<float>(i % 100), static_cast<float>(i % 77)});
    }
    const CGTypes::Path large = path;
    EXPECT_THROW((void)SVG({100, 100}, CGCommands(200, fill(large))).pdfData(), LimitError);
}

TEST(Limits, EndDrawingsThatTakeTooLong) {
    CGPath tangle;
    unsigned place = 1;
    for (int i = 0; i < 100'000; ++i) {
        place = place * 1'664'525U + 1'013'904'223U;
        tangle.line({static_cast<float>(place >> 8U & 1023U), static_cast<float>(place >> 20U & 1023U)});
    }
    const CGTypes::Path shared = tangle;
    EXPECT_THROW((void)drawn({setLine(30), stroke(shared), fill(shared), stroke(shared)}, 1000, 1000), LimitError);
}

}  // namespace
}  // namespace sorvik::draw::testing
