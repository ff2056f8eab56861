#include "sorvikdraw/engine/layer_tree_builder.h"

#include <gmock/gmock.h>

#include "layers_testing.h"

namespace sorvik::draw::layer_tree {
namespace {

using namespace testing;
using ::testing::IsEmpty;
using ::testing::SizeIs;

struct ShapeCase {
    const char* name;
    const char* element;
    Shape shape;
};

class Shapes : public ::testing::TestWithParam<ShapeCase> {};

TEST_P(Shapes, AreThoseOfTheirElements) {
    const Tree tree = built(GetParam().element);
    EXPECT_EQ(shapeOf(child(tree)).shape, GetParam().shape);
}

INSTANTIATE_TEST_SUITE_P(
    All, Shapes,
    ::testing::Values(
        ShapeCase{"Line", R"(<line x1="1" y1="2" x2="3" y2="4"/>)", {Shape::Line{{{1, 2}, {3, 4}}}}},
        ShapeCase{"Circle", R"(<circle cx="5" cy="6" r="2"/>)", {Shape::Ellipse{{{3, 4}, {4, 4}}}}},
        ShapeCase{"CircleAtZero", R"(<circle r="2"/>)", {Shape::Ellipse{{{-2, -2}, {4, 4}}}}},
        ShapeCase{"Ellipse", R"(<ellipse cx="5" cy="6" rx="2" ry="3"/>)", {Shape::Ellipse{{{3, 3}, {4, 6}}}}},
        ShapeCase{"Rect", R"(<rect x="1" y="2" width="3" height="4"/>)", {Shape::Rectangle{{{1, 2}, {3, 4}}, {0, 0}}}},
        ShapeCase{"RectAtZero", R"(<rect width="3" height="4"/>)", {Shape::Rectangle{{{0, 0}, {3, 4}}, {0, 0}}}},
        ShapeCase{"RectRx", R"(<rect width="3" height="4" rx="1"/>)", {Shape::Rectangle{{{0, 0}, {3, 4}}, {1, 1}}}},
        ShapeCase{"RectRy", R"(<rect width="3" height="4" ry="1"/>)", {Shape::Rectangle{{{0, 0}, {3, 4}}, {1, 1}}}},
        ShapeCase{
            "RectRxRy", R"(<rect width="3" height="4" rx="1" ry="2"/>)", {Shape::Rectangle{{{0, 0}, {3, 4}}, {1, 2}}}},
        ShapeCase{"Polyline", R"(<polyline points="1,2 3,4 5,6"/>)", {Shape::Line{{{1, 2}, {3, 4}, {5, 6}}}}},
        ShapeCase{"Polygon", R"(<polygon points="1,2 3,4 5,6"/>)", {Shape::Polygon{{{1, 2}, {3, 4}, {5, 6}}}}}),
    nameOf);

struct TransformCase {
    const char* name;
    const char* transform;
    const char* made;
};

class Transforms : public ::testing::TestWithParam<TransformCase> {};

TEST_P(Transforms, AreConverted) {
    const Tree tree = built(std::string("<g transform=\"") + GetParam().transform + "\"/>");
    EXPECT_EQ(written(child(tree).transform), GetParam().made);
}

INSTANTIATE_TEST_SUITE_P(
    All, Transforms,
    ::testing::Values(TransformCase{"Matrix", "matrix(1 2 3 4 5 6)", "matrix(1 2 3 4 5 6)"},
                      TransformCase{"Moves", "translate(1 2) scale(3)", "translate(1 2) scale(3 3)"},
                      TransformCase{"Rotate", "rotate(90)", "rotate(1.5708)"},
                      TransformCase{"RotateAroundAPoint", "rotate(90, 10, 20)",
                                    "translate(10 20) rotate(1.5708) translate(-10 -20)"},
                      TransformCase{"Skews", "skewX(45) skewY(45)", "matrix(1 0 1 1 0 0) matrix(1 1 0 1 0 0)"}),
    nameOf);

TEST(Viewport, StandsAheadOfTheElementsOwnTransforms) {
    struct {
        const char* attributes;
        const char* made;
    } const cases[] = {
        {R"(width="100" height="50")", ""},
        {R"(width="100" height="50" viewBox="0 0 100 50")", ""},
        {R"(width="100" height="50" viewBox="1 2 50 50")", "scale(2 1) translate(-1 -2)"},
        {R"x(width="100" height="50" x="5" viewBox="1 2 50 50" transform="scale(9)")x",
         "translate(5 0) scale(2 1) translate(-1 -2) scale(9 9)"},
    };
    for (const auto& [attributes, made] : cases) {
        EXPECT_EQ(written(built("", attributes).root->transform), made);
        const Tree nested = built(std::string("<svg ") + attributes + "/>");
        EXPECT_EQ(written(child(nested).transform), made);
    }
}

TEST(Layers, FollowTheDocumentsOrderAndNesting) {
    const Tree tree = built(R"(<g class="a"><circle r="1"/><a><rect width="1" height="1"/></a></g><svg width="5"
        height="5"><circle r="3"/></svg>)");
    ASSERT_THAT(tree.root->contents, SizeIs(2));
    const Layer& group = child(tree, 0);
    EXPECT_EQ(*group.className, "a");
    ASSERT_THAT(group.contents, SizeIs(2));
    EXPECT_TRUE(std::holds_alternative<Shape::Ellipse>(shapeOf(child(group, 0)).shape.value));
    EXPECT_TRUE(std::holds_alternative<Shape::Rectangle>(shapeOf(child(child(group, 1))).shape.value));
    EXPECT_TRUE(std::holds_alternative<Shape::Ellipse>(shapeOf(child(child(tree, 1))).shape.value));
    EXPECT_EQ(tree.layers.size(), 7U);
}

TEST(Layers, HaveOpacitiesOfTheirOwn) {
    const Tree tree = built(R"(<g opacity="0.5"><g opacity="0.5"/><g/></g>)");
    EXPECT_EQ(child(tree).opacity, 0.5F);
    EXPECT_EQ(child(child(tree), 0).opacity, 0.5F);
    EXPECT_EQ(child(child(tree), 1).opacity, 1);
}

TEST(Layers, StayEmptyWhereNothingIsDisplayed) {
    const Tree tree =
        built(R"x(<g display="none" opacity="0.5" transform="scale(2)" mask="url(#m)"><rect width="1" height="1"
        display="inline"/><use xlink:href="#missing"/></g><mask id="m"/>)x");
    const Layer& hidden = child(tree);
    EXPECT_THAT(hidden.contents, IsEmpty());
    EXPECT_THAT(hidden.transform, IsEmpty());
    EXPECT_EQ(hidden.opacity, 1);
    EXPECT_EQ(hidden.mask, nullptr);
}

TEST(Layers, TakeOnlyTheFirstOfASwitch) {
    const Tree tree = built(R"(<switch><circle r="1"/><rect width="1" height="1"/></switch><switch/>)");
    ASSERT_THAT(child(tree, 0).contents, SizeIs(1));
    EXPECT_TRUE(std::holds_alternative<Shape::Ellipse>(shapeOf(child(child(tree, 0))).shape.value));
    EXPECT_THAT(child(tree, 1).contents, IsEmpty());
}

TEST(Layers, TakeAttributesFromStyleSheets) {
    const Tree tree = built(R"x(<style>.c { fill: lime; opacity: 0.5 } svg { stroke: red } #m { fill: blue }</style>
        <rect class="c" width="1" height="1"/><mask id="m"><rect width="1" height="1"/></mask>
        <g style="mask:url(#m)"/>)x");
    EXPECT_EQ(std::get<Color>(fillOf(child(tree))), (Color{RGBA{0, 1, 0, 1}}));
    EXPECT_EQ(std::get<Color>(strokeOf(child(tree))), (Color{RGBA{1, 0, 0, 1}}));
    EXPECT_EQ(child(tree).opacity, 0.5F);
    EXPECT_EQ(std::get<Color>(fillOf(child(*child(tree, 1).mask))), (Color{RGBA{0, 0, 1, 1}}));
}

TEST(Clips, HoldTheShapesOfTheirChildrenInTheLayersSpace) {
    const Tree tree = built(R"x(
        <clipPath id="c"><rect width="1" height="2" transform="translate(3 4) scale(2)"/><g><circle r="9"/></g>
            <circle r="1"/></clipPath>
        <g clip-path="url(#c)" clip-rule="evenodd"/><g clip-path="url(#c)"/><g clip-path="url(#missing)"/>)x");
    ASSERT_TRUE(child(tree, 0).clip);
    const auto& clip = *child(tree, 0).clip;
    ASSERT_THAT(clip, SizeIs(2));
    EXPECT_EQ(clip[0], (ClipShape{{Shape::Rectangle{{{0, 0}, {1, 2}}, {0, 0}}}, {2, 0, 0, 2, 3, 4}}));
    EXPECT_EQ(clip[1], (ClipShape{{Shape::Ellipse{{{-1, -1}, {2, 2}}}}, {}}));
    EXPECT_EQ(child(tree, 0).clipRule, dom::FillRule::evenodd);
    EXPECT_EQ(child(tree, 1).clip.get(), child(tree, 0).clip.get());
    EXPECT_EQ(child(tree, 1).clipRule, std::nullopt);
    EXPECT_FALSE(child(tree, 2).clip);
}

TEST(Masks, StartAfreshAndAreShared) {
    const Tree tree = built(R"x(
        <mask id="m" class="k" fill="lime" opacity="0.5" transform="scale(2)"><rect width="1" height="1"/></mask>
        <g fill="red" mask="url(#m)"/><g mask="url(#m)"/><g mask="url(#missing)"/>)x");
    const Layer* const mask = child(tree, 0).mask;
    ASSERT_NE(mask, nullptr);
    EXPECT_EQ(*mask->className, "k");
    EXPECT_EQ(mask->opacity, 1);
    EXPECT_THAT(mask->transform, IsEmpty());
    EXPECT_EQ(std::get<Color>(fillOf(child(*mask))), (Color{RGBA{0, 1, 0, 1}}));
    EXPECT_EQ(child(tree, 1).mask, mask);
    EXPECT_EQ(child(tree, 2).mask, nullptr);
}

TEST(Filters, AreInherited) {
    const Tree tree = built(R"x(<filter id="f"><feGaussianBlur stdDeviation="3"/></filter>
        <g filter="url(#f)"><g/><g filter="url(#missing)"/></g>)x");
    const Layer& group = child(tree);
    ASSERT_TRUE(group.filters);
    EXPECT_THAT(*group.filters, ::testing::ElementsAre(dom::Filter::Effect{3}));
    EXPECT_EQ(child(group, 0).filters.get(), group.filters.get());
    EXPECT_FALSE(child(group, 1).filters);
}

TEST(Images, AreTakenFromDataOfKnownTypes) {
    const Tree tree = built(R"x(<image x="1" width="5" xlink:href="data:image/png;base64,AAECAw=="/>
        <image xlink:href="data:image/jpeg;base64,AAEC"/>)x");
    const Image& image = contentsOf<Image>(child(tree));
    EXPECT_EQ(image.bitmap.format, Bitmap::Format::png);
    EXPECT_THAT(*image.bitmap.bytes, ::testing::ElementsAre(std::byte{0}, std::byte{1}, std::byte{2}, std::byte{3}));
    EXPECT_EQ(image.origin, (Point{1, 0}));
    EXPECT_EQ(image.width, 5);
    EXPECT_EQ(image.height, std::nullopt);
    EXPECT_EQ(contentsOf<Image>(child(tree, 1)).bitmap.format, Bitmap::Format::jpeg);
}

TEST(Images, OfAnyOtherKindFailTheBuild) {
    for (const char* href : {"picture.png", "data:image/gif;base64,AAEC", "data:image/png,AAEC",
                             "data:image/PNG;base64,AAEC", "http://example.org/a.png"}) {
        EXPECT_EQ(errorOf(std::string("<image xlink:href=\"") + href + "\"/>"), "Cannot decode image") << href;
    }
}

}  // namespace
}  // namespace sorvik::draw::layer_tree
