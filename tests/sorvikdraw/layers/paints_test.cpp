#include <gmock/gmock.h>

#include "layers_testing.h"

namespace sorvik::draw::layer_tree {
namespace {

using namespace testing;
using ::testing::SizeIs;

Color colorOf(const Fill& fill) { return std::get<Color>(fill); }

// What a rect with these attributes is filled with, inside a group with others.
struct ColorCase {
    const char* name;
    const char* outer;
    const char* own;
    Color color;
};

class FillColors : public ::testing::TestWithParam<ColorCase> {};

TEST_P(FillColors, AreResolved) {
    const auto& [name, outer, own, color] = GetParam();
    const Tree tree = built(std::string("<g ") + outer + R"(><rect width="1" height="1" )" + own + "/></g>");
    EXPECT_EQ(colorOf(fillOf(child(child(tree)))), color);
}

INSTANTIATE_TEST_SUITE_P(
    All, FillColors,
    ::testing::Values(
        ColorCase{"Unset", "", "", RGBA{0, 0, 0, 1}},
        ColorCase{"Keyword", "", R"(fill="orange")", RGBA{1, 165 / 255.0F, 0, 1}},
        ColorCase{"Hex", "", R"(fill="#336699")", RGBA{0.2F, 0.4F, 0.6F, 1}},
        ColorCase{"Bytes", "", R"x(fill="rgba(255, 51, 0, 0.5)")x", RGBA{1, 0.2F, 0, 0.5F}},
        ColorCase{"Percentages", "", R"x(fill="rgb(10%, 20%, 30%)")x", RGBA{0.1F, 0.2F, 0.3F, 1}},
        ColorCase{"P3", "", R"x(fill="color(display-p3 1, 0.5, 0.25)")x", RGBA{1, 0.5F, 0.25F, 1, ColorSpace::p3}},
        ColorCase{"None", "", R"(fill="none")", NoColor{}},
        ColorCase{"Inherited", R"(fill="red")", "", RGBA{1, 0, 0, 1}},
        ColorCase{"Overridden", R"(fill="red")", R"(fill="blue")", RGBA{0, 0, 1, 1}},
        ColorCase{"Current", "", R"(fill="currentColor" color="lime")", RGBA{0, 1, 0, 1}},
        ColorCase{"CurrentUnset", "", R"(fill="currentColor")", RGBA{0, 0, 0, 1}},
        ColorCase{"CurrentIsThatOfTheShape", R"(fill="currentColor" color="red")", R"(color="lime")", RGBA{0, 1, 0, 1}},
        ColorCase{"CurrentOfCurrent", "", R"(fill="currentColor" color="currentColor")", NoColor{}},
        ColorCase{"OpacityOnAlpha", R"x(fill="rgba(255,0,0,0.5)")x", R"(fill-opacity="50%")", RGBA{1, 0, 0, 0.25F}},
        ColorCase{"OpacityInherited", R"(fill-opacity="0.5")", R"(fill="red")", RGBA{1, 0, 0, 0.5F}},
        ColorCase{"OpacityOfNothing", "", R"(fill-opacity="0")", NoColor{}},
        ColorCase{"MissingReference", "", R"x(fill="url(#missing)")x", NoColor{}},
        ColorCase{"ReferenceElsewhere", "", R"x(fill="url(other.svg)")x", NoColor{}}),
    nameOf);

TEST(Strokes, AreInheritedAsAWhole) {
    const Tree tree = built(
        R"(<g stroke="red" stroke-width="3" stroke-linecap="round" stroke-linejoin="bevel" stroke-opacity="0.5"
              stroke-dasharray="1 2"><line x1="1" y1="2" x2="3" y2="4"/></g>)");
    const auto& [shape, stroke, fill] = shapeOf(child(child(tree)));
    EXPECT_EQ(shape, (Shape{Shape::Line{{{1, 2}, {3, 4}}}}));
    EXPECT_EQ(std::get<Color>(stroke.color), (Color{RGBA{1, 0, 0, 0.5F}}));
    EXPECT_EQ(stroke.width, 3);
    EXPECT_EQ(stroke.cap, dom::LineCap::round);
    EXPECT_EQ(stroke.join, dom::LineJoin::bevel);
    EXPECT_EQ(stroke.miterLimit, 4);
}

TEST(Strokes, NeedAColourAndAWidth) {
    for (const char* attributes : {"", R"(stroke="red" stroke-width="0")", R"(stroke="red" stroke-width="-1")",
                                   R"(stroke="red" stroke-opacity="0")", R"x(stroke="url(#p)")x"}) {
        const Tree tree = built(R"(<pattern id="p" width="1" height="1"/><rect width="1" height="1" )" +
                                std::string(attributes) + "/>");
        EXPECT_TRUE(paintsNothing(strokeOf(child(tree)))) << attributes;
    }
}

constexpr const char* twoStops = R"(<stop offset="0" stop-color="red"/><stop offset="1" stop-color="currentColor"/>)";

std::string linear(const std::string& attributes, const char* stops = twoStops) {
    return "<linearGradient " + attributes + ">" + stops + "</linearGradient>";
}
std::string radial(const std::string& attributes, const char* stops = twoStops) {
    return "<radialGradient " + attributes + ">" + stops + "</radialGradient>";
}
std::string rectFilledWith(const std::string& id) {
    return R"x(<rect width="1" height="1" color="lime" fill="url(#)x" + id + R"x()"/>)x";
}

std::shared_ptr<const LinearGradient> linearOf(const Layer& layer) {
    return std::get<std::shared_ptr<const LinearGradient>>(fillOf(layer));
}
std::shared_ptr<const RadialGradient> radialOf(const Layer& layer) {
    return std::get<std::shared_ptr<const RadialGradient>>(fillOf(layer));
}

TEST(Gradients, HaveDefaults) {
    const Tree tree = built(linear(R"(id="l")") + radial(R"(id="r")") + rectFilledWith("l") + rectFilledWith("r"));
    // The current colour of a shape is none of a gradient's.
    const Gradient gradient{{{0, RGBA{1, 0, 0, 1}, 1}, {1, NoColor{}, 1}}};
    EXPECT_EQ(*linearOf(child(tree, 0)), (LinearGradient{gradient, {0, 0}, {1, 0}, Units::objectBoundingBox, {}}));
    EXPECT_EQ(*radialOf(child(tree, 1)),
              (RadialGradient{gradient, {0.5F, 0.5F}, 0, {0.5F, 0.5F}, 0.5F, Units::objectBoundingBox, {}}));
}

TEST(Gradients, KeepWhatIsWritten) {
    const Tree tree = built(linear(R"x(id="l" x1="1" y1="2" x2="3" y2="4" gradientUnits="userSpaceOnUse"
                                       gradientTransform="rotate(180) scale(2)")x") +
                            radial(R"(id="r" cx="1" cy="2" r="3" fx="4" fr="5")") + rectFilledWith("l") +
                            R"x(<rect width="1" height="1" stroke="url(#r)"/>)x");
    const auto linear = linearOf(child(tree, 0));
    EXPECT_EQ(linear->start, (Point{1, 2}));
    EXPECT_EQ(linear->end, (Point{3, 4}));
    EXPECT_EQ(linear->units, Units::userSpaceOnUse);
    EXPECT_EQ(written(linear->transform), "rotate(3.14159) scale(2 2)");
    const auto radial = std::get<std::shared_ptr<const RadialGradient>>(strokeOf(child(tree, 1)));
    EXPECT_EQ(radial->center, (Point{4, 2}));
    EXPECT_EQ(radial->radius, 5);
    EXPECT_EQ(radial->endCenter, (Point{1, 2}));
    EXPECT_EQ(radial->endRadius, 3);
}

TEST(Gradients, TakeTheStopsOfTheOneTheyReferTo) {
    const Tree tree = built(
        linear(R"(id="a" xlink:href="#b")", "") + linear(R"(id="b")") + linear(R"(id="own" xlink:href="#missing")") +
        linear(R"(id="further" xlink:href="#a")", "") + linear(R"(id="self" xlink:href="#self")", "") +
        radial(R"(id="otherKind" xlink:href="#b")", "") + rectFilledWith("a") + rectFilledWith("own") +
        rectFilledWith("further") + rectFilledWith("self") + rectFilledWith("otherKind"));
    for (const std::size_t index : {0U, 1U}) {
        EXPECT_THAT(linearOf(child(tree, index))->gradient.stops, SizeIs(2));
    }
    for (const std::size_t index : {2U, 3U, 4U}) {
        EXPECT_TRUE(paintsNothing(fillOf(child(tree, index)))) << index;
    }
}

TEST(Gradients, WithOneStopAreNone) {
    const Tree tree = built(linear(R"(id="g")", "<stop/>") + rectFilledWith("g"));
    EXPECT_TRUE(paintsNothing(fillOf(child(tree))));
}

TEST(Gradients, AreSharedAndTheFirstOfAnIdCounts) {
    const Tree tree =
        built(linear(R"(id="g" x1="7")") + linear(R"(id="g")") + rectFilledWith("g") + rectFilledWith("g"));
    EXPECT_EQ(linearOf(child(tree, 0))->start.x, 7);
    EXPECT_EQ(linearOf(child(tree, 0)), linearOf(child(tree, 1)));
}

TEST(Patterns, StartAfreshAndAreShared) {
    const Tree tree = built(R"x(
        <linearGradient id="p"><stop/><stop/></linearGradient>
        <pattern id="p" x="5" y="6" width="3" height="4"><circle r="1"/><rect width="1" height="1"/></pattern>
        <g fill="red"><rect width="9" height="9" fill="url(#p)"/><g fill="url(#p)"><circle r="2"/></g></g>)x");
    const Layer& group = child(tree);
    const auto pattern = std::get<std::shared_ptr<const Pattern>>(fillOf(child(group)));
    EXPECT_EQ(pattern->frame, (Rect{{0, 0}, {3, 4}}));
    ASSERT_EQ(pattern->contents.size(), 2U);
    EXPECT_EQ(colorOf(fillOf(*pattern->contents[0])), (Color{RGBA{0, 0, 0, 1}}));
    EXPECT_EQ(std::get<std::shared_ptr<const Pattern>>(fillOf(child(child(group, 1)))), pattern);
}

}  // namespace
}  // namespace sorvik::draw::layer_tree
