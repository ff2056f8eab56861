#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <string>
#include <vector>

#include "drawings.h"

namespace sorvik::draw::testing {
namespace {

struct Probe {
    int x, y;
    std::uint32_t pixel;
    int tolerance = 0;
};
struct Case {
    std::string name;
    CGCommands commands;
    std::vector<Probe> probes;
    int width = 40, height = 40;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Pixels : public ::testing::TestWithParam<Case> {};

TEST_P(Pixels, AreAsTold) {
    const Case& c = GetParam();
    const Raster raster = drawn(c.commands, c.width, c.height);
    for (const Probe& probe : c.probes) {
        const std::uint32_t pixel = raster.row(probe.y)[probe.x];
        EXPECT_TRUE(isNear(pixel, probe.pixel, probe.tolerance))
            << probe.x << ", " << probe.y << ": " << std::hex << pixel << " instead of " << probe.pixel;
    }
}

std::string nameOf(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

const CGTypes::Path square = rectangle(10, 10, 20, 20);
const CGTypes::Path canvas = rectangle(0, 0, 40, 40);
const CGColor halfRed{1, 0, 0, 0.5F};

INSTANTIATE_TEST_SUITE_P(
    Shapes, Pixels,
    ::testing::Values(
        Case{"Fill", {setFill(red), fill(square)}, {{10, 10, redPixel}, {29, 29, redPixel}, {9, 10, 0}, {30, 29, 0}}},
        Case{"UserSpacesNest",
             {push, translate(10, 0), scale(2, 1), setFill(red), fill(rectangle(0, 0, 5, 5)), pop,
              fill(rectangle(0, 30, 5, 5))},
             {{10, 0, redPixel}, {19, 4, redPixel}, {20, 4, 0}, {2, 32, 0xFF000000}}},
        Case{"RotationTurnsXTowardsY",
             {setFill(red), command(C::Rotate{std::numbers::pi_v<float> / 2}), fill(rectangle(10, -5, 10, 5))},
             {{2, 15, redPixel}, {15, 2, 0}}},
        Case{"RulesOfFilling",
             {setFill(red),
              command(C::Fill{
                  polygon(
                      {{0, 0}, {40, 0}, {40, 40}, {0, 40}, {0, 0}, {10, 10}, {30, 10}, {30, 30}, {10, 30}, {10, 10}}),
                  dom::FillRule::evenodd})},
             {{5, 5, redPixel}, {20, 20, 0}}},
        Case{"AlphaMultiplies", {setAlpha(0.5F), setFill(halfRed), fill(square)}, {{20, 20, 0x40400000, 1}}},
        Case{"AlphaOfTheInnerState",
             {setAlpha(0.5F), push, setAlpha(1), setFill(red), fill(square), pop},
             {{20, 20, redPixel}}},
        Case{"StrokesScale",
             {scale(2, 2), setStroke(red), setLine(4), stroke(polyline({{0, 10}, {20, 10}}))},
             {{20, 15, 0}, {20, 16, redPixel}, {20, 23, redPixel}, {20, 24, 0}}},
        Case{"PenOfASkewedSpace",
             {scale(1, 4), setStroke(red), setLine(2), stroke(polyline({{10, 0}, {10, 5}, {40, 5}}))},
             {{9, 5, redPixel}, {11, 5, 0}, {30, 16, redPixel}, {30, 23, redPixel}, {30, 25, 0}}},
        Case{"Copy",
             {setFill(green), fill(canvas), setBlend(BlendMode::copy), setFill(halfRed), fill(square)},
             {{20, 20, 0x80800000, 1}, {5, 5, greenPixel}}},
        Case{"DestinationIn",
             {setFill(green), fill(canvas), clip(rectangle(0, 0, 35, 40)), setBlend(BlendMode::destinationIn),
              setFill(halfRed), fill(square)},
             {{20, 20, 0x80008000, 1}, {5, 5, 0}, {37, 5, greenPixel}}}),
    nameOf);

CGCommands dot(dom::LineCap cap, float slope) {
    return {setStroke(red),
            setLine(10),
            command(C::SetLineCap{cap}),
            translate(20, 20),
            command(C::Rotate{slope}),
            stroke(polyline({{0, 0}, {0, 0}}))};
}

INSTANTIATE_TEST_SUITE_P(
    PartsWithoutLength, Pixels,
    ::testing::Values(
        Case{"Butt", dot(dom::LineCap::butt, 0), {{20, 20, 0}}},
        Case{"Square",
             dot(dom::LineCap::square, 0),
             {{15, 15, redPixel}, {24, 24, redPixel}, {25, 20, 0, 4}, {14, 20, 0, 4}}},
        Case{"Round", dot(dom::LineCap::round, 0), {{16, 20, redPixel}, {20, 24, redPixel, 12}, {15, 15, 0}}},
        Case{"SquareTurned",
             dot(dom::LineCap::square, std::numbers::pi_v<float> / 4),
             {{20, 14, redPixel, 8}, {15, 15, 0}, {25, 20, redPixel}}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Clips, Pixels,
    ::testing::Values(Case{"Meet",
                           {push, clip(rectangle(0, 0, 20, 40)), clip(rectangle(10, 10, 30, 10)), setFill(red),
                            fill(canvas), pop, setFill(blue), fill(rectangle(30, 30, 5, 5))},
                           {{15, 15, redPixel}, {5, 15, 0}, {25, 15, 0}, {32, 32, bluePixel}}},
                      Case{"WithoutPathHideAll", {clip(polyline({})), setFill(red), fill(canvas)}, {{20, 20, 0}}},
                      Case{"StayWithTheirSpace",
                           {push, scale(2, 2), clip(rectangle(5, 5, 5, 5)), scale(10, 10), setFill(red), fill(canvas),
                            pop},
                           {{10, 10, redPixel}, {19, 19, redPixel}, {20, 20, 0}, {9, 9, 0}}},
                      Case{"OfStrokes",
                           {setLine(10), clipStroke(polyline({{0, 20}, {40, 20}})), setFill(red),
                            fill(rectangle(0, 0, 20, 40)), setFill(blue), fill(rectangle(20, 0, 20, 40))},
                           {{10, 20, redPixel}, {30, 20, bluePixel}, {10, 14, 0}, {30, 26, 0}}},
                      Case{"OfStrokesEndWithTheState",
                           {push, setLine(10), clipStroke(polyline({{0, 20}, {40, 20}})), push, setFill(red),
                            fill(canvas), pop, pop, setFill(green), fill(rectangle(0, 0, 5, 5))},
                           {{20, 20, redPixel}, {20, 5, 0}, {2, 2, greenPixel}}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Layers, Pixels,
    ::testing::Values(
        Case{"CompositeAsOne",
             {push, setAlpha(0.5F), pushLayer, setFill(red), fill(canvas), setFill(green), fill(square), popLayer, pop},
             {{5, 5, 0x80800000, 1}, {20, 20, 0x80008000, 1}}},
        Case{"RestoreTheState",
             {setFill(red), pushLayer, setFill(green), translate(100, 0), popLayer, fill(square)},
             {{20, 20, redPixel}}},
        Case{"KeepColours", {setFill(red), pushLayer, fill(square), popLayer}, {{20, 20, redPixel}}},
        Case{"Mask",
             {pushLayer, setFill(green), fill(canvas), setBlend(BlendMode::destinationIn), pushLayer,
              setBlend(BlendMode::copy), setFill({0, 0, 0, 0.5F}), fill(square), setFill({0, 0, 0, 0}),
              fill(rectangle(20, 20, 10, 10)), popLayer, popLayer},
             {{15, 15, 0x80008000, 1}, {25, 25, 0}, {5, 5, 0}}},
        Case{"MaskOfNothing",
             {pushLayer, setFill(green), fill(canvas), setBlend(BlendMode::destinationIn), pushLayer,
              setBlend(BlendMode::copy), popLayer, popLayer},
             {{20, 20, 0}}},
        Case{"MaskElsewhere",
             {setFill(red), fill(rectangle(0, 0, 5, 5)), pushLayer, setFill(green), fill(square),
              setBlend(BlendMode::destinationIn), pushLayer, fill(rectangle(0, 0, 5, 5)), popLayer, popLayer},
             {{20, 20, 0}, {2, 2, redPixel}}},
        Case{"ClippedOnceAtSoftEdges",
             {clip(rectangle(10.5F, 0, 20, 40)), pushLayer, setFill(red), fill(canvas), popLayer},
             {{10, 20, 0x80800000, 2}, {20, 20, redPixel}}},
        Case{"PopsWithoutPushes", {popLayer, pop, setFill(red), popLayer, pop, fill(square)}, {{20, 20, redPixel}}},
        Case{"PushesWithoutPops", {setFill(red), push, pushLayer, push, fill(square)}, {{20, 20, redPixel}}}),
    nameOf);

const CGTypes::Gradient redToBlue = gradient(red, blue);

INSTANTIATE_TEST_SUITE_P(
    Gradients, Pixels,
    ::testing::Values(
        Case{"LinearGoOnBeyondTheirEnds",
             {push, clip(canvas), linear(redToBlue, {10, 0}, {30, 0}), pop},
             {{2, 20, redPixel}, {38, 20, bluePixel}, {20, 20, 0xFF7B0084, 6}}},
        Case{"LinearInASkewedSpace",
             {push, clip(canvas), matrix(1, 0, 1, 1, 0, 0), linear(redToBlue, {0, 0}, {0, 40}), pop},
             {{5, 0, redPixel, 6}, {35, 0, redPixel, 6}, {20, 20, 0xFF7C0083, 6}, {20, 39, bluePixel, 6}}},
        Case{"WithoutLengthHaveTheLastColour",
             {push, clip(square), linear(redToBlue, {20, 20}, {20, 20}), pop},
             {{15, 15, bluePixel}, {5, 5, 0}}},
        Case{"OfFlatBoxes",
             {push, setLine(10), clipStroke(polyline({{0, 20}, {40, 20}})), linear(redToBlue, {0, 20}, {0, 20}), pop},
             {{20, 20, 0}}},
        Case{
            "RadialGoOnBeyondTheirCircles",
            {push, clip(canvas), radial(redToBlue, {{20, 20}, 5, {20, 20}, 10}), pop},
            {{20, 20, redPixel}, {22, 20, redPixel}, {1, 1, bluePixel}, {20, 32, bluePixel}, {20, 27, 0xFF800080, 16}}},
        Case{"RadialWithoutRadius",
             {push, clip(canvas), radial(redToBlue, {{20, 20}, 0, {20, 20}, 0}), pop},
             {{5, 5, bluePixel}}},
        Case{"RadialInAFlatSpace",
             {push, clip(canvas), translate(20, 20), scale(1, 0.25F), radial(redToBlue, {{0, 0}, 0, {0, 0}, 20}), pop},
             {{20, 20, redPixel, 30}, {10, 20, 0xFF800080, 8}, {20, 22, 0xFF800080, 14}, {20, 30, bluePixel}}},
        Case{"Alpha",
             {push, clip(canvas), setAlpha(0.5F), linear(gradient(halfRed, halfRed), {0, 0}, {40, 0}), pop},
             {{20, 20, 0x40400000, 1}}},
        Case{"OfWholeClips", {linear(redToBlue, {0, 0}, {0, 40})}, {{20, 0, redPixel, 4}, {20, 39, bluePixel, 4}}},
        Case{"SecondOverFirst",
             {push, clip(square), linear(redToBlue, {0, 0}, {1, 0}), linear(gradient(red, red), {0, 0}, {1, 0}), pop},
             {{20, 20, redPixel}}},
        Case{
            "AndOtherThingsInOneClip",
            {push, clip(square), linear(redToBlue, {0, 0}, {1, 0}), setFill(green), fill(rectangle(0, 0, 20, 40)), pop},
            {{15, 20, greenPixel}, {25, 20, bluePixel}, {5, 20, 0}}},
        Case{"OfStrokes",
             {push, setLine(10), command(C::SetLineCap{dom::LineCap::square}),
              clipStroke(polyline({{10, 35}, {10, 10}, {35, 10}})), translate(5, 0), linear(redToBlue, {0, 0}, {30, 0}),
              pop},
             {{5, 20, redPixel, 8},
              {5, 5, redPixel, 8},
              {37, 10, bluePixel, 8},
              {20, 14, 0xFF7C0083, 8},
              {20, 16, 0},
              {10, 39, 0xFFD8002A, 12}}}),
    nameOf);

const CGTypes::Pattern checks =
    pattern({{0, 0}, {4, 4}}, {setFill(red), fill(rectangle(0, 0, 2, 2)), setFill(blue), fill(rectangle(2, 2, 2, 2))});

INSTANTIATE_TEST_SUITE_P(
    Patterns, Pixels,
    ::testing::Values(
        Case{"StartAtTheOrigin",
             {command(C::SetFillPattern{checks}), fill(square)},
             {{12, 12, redPixel}, {14, 14, bluePixel}, {10, 10, bluePixel}, {14, 12, 0}, {8, 8, 0}}},
        Case{"MoveWithTheUserSpace",
             {command(C::SetFillPattern{checks}), translate(2, 0), fill(square)},
             {{14, 12, redPixel}, {12, 14, bluePixel}, {12, 12, 0}}},
        Case{"ScaleWithTheUserSpace",
             {command(C::SetFillPattern{checks}), scale(2, 2), fill(canvas)},
             {{0, 0, redPixel}, {11, 11, redPixel}, {4, 4, bluePixel}, {4, 0, 0}}},
        Case{"OfFewTiles",
             {command(C::SetFillPattern{pattern({{0, 0}, {30, 30}}, {setFill(red), fill(rectangle(0, 0, 10, 100))})}),
              fill(canvas)},
             {{5, 5, redPixel}, {5, 35, redPixel}, {15, 5, 0}, {35, 5, redPixel}, {29, 29, 0}}},
        Case{"AlphaOfFewTiles",
             {setAlpha(0.5F),
              command(C::SetFillPattern{
                  pattern({{0, 0}, {30, 30}}, {setFill(red), fill(canvas), setFill(green), fill(canvas)})}),
              fill(canvas)},
             {{5, 5, 0x80008000, 1}}},
        Case{"AlphaOfManyTiles",
             {setAlpha(0.5F), command(C::SetFillPattern{checks}), fill(canvas)},
             {{0, 0, 0x80800000, 1}, {2, 0, 0}}},
        Case{"DoNotDrift",
             {command(C::SetFillPattern{pattern({{0, 0}, {10.1F, 40}}, {setFill(red), fill(rectangle(0, 0, 5, 40))})}),
              fill(rectangle(0, 0, 1010, 40))},
             {{1, 20, redPixel}, {6, 20, 0}, {992, 20, redPixel, 16}, {996, 20, 0, 16}},
             1010,
             40},
        Case{"BoundsNotAtTheOrigin",
             {command(C::SetFillPattern{pattern({{1, 1}, {4, 4}}, {setFill(red), fill(rectangle(0, 0, 2, 2))})}),
              fill(canvas)},
             {{1, 1, redPixel}, {0, 0, 0}, {5, 5, redPixel}, {2, 2, 0}}},
        Case{"SmallerThanAPixel",
             {scale(0.1F, 0.1F),
              command(C::SetFillPattern{pattern({{0, 0}, {4, 4}}, {setFill(red), fill(rectangle(0, 0, 2, 4))})}),
              fill(rectangle(0, 0, 400, 400))},
             {{20, 20, 0x80800000, 4}}},
        Case{"InPatterns",
             {command(C::SetFillPattern{
                  pattern({{0, 0}, {8, 8}}, {command(C::SetFillPattern{checks}), fill(rectangle(0, 0, 4, 8))})}),
              fill(canvas)},
             {{0, 0, redPixel}, {2, 2, bluePixel}, {4, 4, 0}, {8, 4, redPixel}}}),
    nameOf);

TEST(PixelSize, IsTheDrawingsTimesTheScale) {
    const SVG svg({10, 20}, {});
    EXPECT_EQ(rasterize(svg).width(), 10);
    EXPECT_EQ(rasterize(svg, 2).width(), 20);
    EXPECT_EQ(rasterize(svg, 2).height(), 40);
    EXPECT_EQ(rasterize(svg, SVG::Size{5, 5}, 3).width(), 15);
    EXPECT_EQ(rasterize(SVG({10, 20}, {}), 1.1).width(), 11);
    EXPECT_EQ(rasterize(SVG({10.25, 0.1}, {})).width(), 11);
    EXPECT_EQ(rasterize(SVG({10.25, 0.1}, {})).height(), 1);
}

TEST(Bands, MakeNoDifference) {
    CGCommands scene{setFill({0.3F, 0.6F, 0.1F, 0.7F}), setStroke({0.2F, 0.1F, 0.8F, 0.6F})};
    for (int i = 0; i < 60; ++i) {
        const auto at = [i](int k) {
            return layer_tree::Point{static_cast<float>((i * 37 + k * 101) % 211),
                                     static_cast<float>((i * 53 + k * 71) % 197) + 0.3F};
        };
        CGPath curve;
        curve.move(at(0));
        curve.cubic(at(1), at(2), at(3));
        curve.line(at(4));
        const CGTypes::Path path = curve;
        const CGCommands one[] = {
            {fill(path)},
            {setLine(static_cast<float>(i % 7) + 0.4F), stroke(path)},
            {push, clip(path), linear(redToBlue, at(5), at(6)), pop},
            {push, setAlpha(0.4F), pushLayer, fill(path), push, clip(path), radial(redToBlue, {at(5), 0, at(5), 60}),
             pop, popLayer, pop},
            {push, command(C::Rotate{0.3F}), command(C::SetFillPattern{checks}), fill(path), pop},
            {push, setLine(9), clipStroke(path), linear(redToBlue, at(1), at(2)), pop},
            {pushLayer, fill(path), setBlend(BlendMode::destinationIn), pushLayer, fill(rectangle(50, 50, 100, 100)),
             popLayer, popLayer},
        };
        scene = joined({scene, one[i % 7]});
    }
    const auto one = pixelsOf(drawn(scene, 211, 200, 1));
    for (const int bands : {2, 7}) {
        const auto several = pixelsOf(drawn(scene, 211, 200, bands));
        EXPECT_TRUE(std::ranges::equal(one, several, [](auto a, auto b) { return isNear(a, b, 6); })) << bands;
    }
}

}  // namespace
}  // namespace sorvik::draw::testing
