#include <gmock/gmock.h>

#include "layers_testing.h"
#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/reference_graph.h"

namespace sorvik::draw::layer_tree {
namespace {

using namespace testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(Uses, DrawWithTheirOwnStateAndPlace) {
    const Tree tree = built(R"x(<defs><rect id="r" width="1" height="1" transform="scale(2)"/></defs>
        <g fill="red"><use xlink:href="#r" x="3" transform="rotate(0)"/><use xlink:href="other.svg#r" fill="lime"/></g>)x");
    const Layer& use = child(child(tree), 0);
    EXPECT_EQ(written(use.transform), "rotate(0)");
    EXPECT_EQ(written(child(use).transform), "translate(3 0) scale(2 2)");
    EXPECT_EQ(std::get<Color>(fillOf(child(use))), (Color{RGBA{1, 0, 0, 1}}));
    const Layer& other = child(child(child(tree), 1));
    EXPECT_EQ(written(other.transform), "scale(2 2)");
    EXPECT_EQ(std::get<Color>(fillOf(other)), (Color{RGBA{0, 1, 0, 1}}));
}

TEST(Uses, OfAnSvgPutItsViewportBehindTheirOffset) {
    const Tree tree = built(R"(<defs><svg id="s" width="10" height="10" viewBox="0 0 5 5"><circle r="1"/></svg></defs>
        <use xlink:href="#s" y="7"/>)");
    EXPECT_EQ(written(child(child(tree)).transform), "translate(0 7) scale(2 2)");
}

TEST(Uses, ShareThePointsOfWhatTheyRepeat) {
    const Tree tree = built(R"(<defs><g id="g"><polygon points="1 2 3 4 5 6"/></g></defs>
        <use xlink:href="#g"/><use xlink:href="#g"/>)");
    const auto points = [&tree](std::size_t use) {
        return &std::get<Shape::Polygon>(shapeOf(child(child(child(tree, use)))).shape.value).between.front();
    };
    EXPECT_EQ(points(0), points(1));
}

TEST(Uses, OfTheSameElementBesideEachOtherAreNoCircle) {
    EXPECT_THAT(errorOf(R"(<g id="a"><circle r="1"/></g><g id="b"><use xlink:href="#a"/><use xlink:href="#a"/></g>
        <use xlink:href="#b"/>)"),
                IsEmpty());
}

// Elements whose build fails, and what is said about them.
struct ErrorCase {
    const char* name;
    std::string contents;
    const char* error;
};

class References : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(References, ThatCannotBeFollowedFailTheBuild) {
    EXPECT_THAT(errorOf(GetParam().contents), HasSubstr(GetParam().error));
}

std::string chain(const char* kind, const char* attribute, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += std::string("<") + kind + R"( width="1" height="1" id="n)" + std::to_string(i) +
                R"("><rect width="1" height="1" )" + attribute + R"(="url(#n)" + std::to_string(i + 1) + R"x()"/></)x" +
                kind + ">";
    }
    return text + "<rect width=\"1\" height=\"1\" " + attribute + R"x(="url(#n0)"/>)x";
}

std::string usesDoubled(std::size_t times) {
    std::string text = R"(<defs><g id="u0"/>)";
    for (std::size_t i = 0; i < times; ++i) {
        const std::string use = R"(<use xlink:href="#u)" + std::to_string(i) + R"("/>)";
        text.append(R"(<g id="u)").append(std::to_string(i + 1)).append("\">").append(use).append(use).append("</g>");
    }
    return text + R"(</defs><use xlink:href="#u)" + std::to_string(times) + R"("/>)";
}

INSTANTIATE_TEST_SUITE_P(
    All, References,
    ::testing::Values(
        ErrorCase{"UseOfNothing", R"(<use xlink:href="#nothing"/>)", "missing referenced element: #nothing"},
        ErrorCase{"UseOfNoId", R"(<use xlink:href="other.svg"/>)", "missing referenced element: other.svg"},
        ErrorCase{"UseOfItself", R"(<use id="a" xlink:href="#a"/>)", "\"a\" uses itself"},
        ErrorCase{"UseOfAParent", R"(<g id="a"><g><use xlink:href="#a"/></g></g>)", "\"a\" uses itself"},
        ErrorCase{"UsesOfEachOther", R"(<g id="a"><use xlink:href="#b"/></g><g id="b"><use xlink:href="#a"/></g>)",
                  "uses itself"},
        ErrorCase{"UsesWithoutEnd", usesDoubled(40), "references come to more than"},
        ErrorCase{"UsesTooDeep", usesDoubled(limits::expansionDepth + 1), "uses are nested"},
        ErrorCase{"PatternOfItself",
                  R"x(<pattern id="p" width="1" height="1"><rect width="1" height="1" fill="url(#p)"/></pattern>
                      <rect width="1" height="1" fill="url(#p)"/>)x",
                  "the pattern \"p\" refers to itself"},
        ErrorCase{"MaskOfItself", R"x(<mask id="m"><g><g mask="url(#m)"/></g></mask><g mask="url(#m)"/>)x",
                  "the mask \"m\" refers to itself"},
        ErrorCase{"MaskAndPatternOfEachOther",
                  R"x(<mask id="m"><rect width="1" height="1" fill="url(#p)"/></mask>
                      <pattern id="p" width="1" height="1"><g mask="url(#m)"/></pattern><g mask="url(#m)"/>)x",
                  "refers to itself"},
        ErrorCase{"PatternOfItselfByUse",
                  R"x(<defs><rect id="r" width="1" height="1" fill="url(#p)"/></defs>
                      <pattern id="p" width="1" height="1"><use xlink:href="#r"/></pattern><use xlink:href="#r"/>)x",
                  "the pattern \"p\" refers to itself"},
        ErrorCase{"PatternsTooDeep", chain("pattern", "fill", limits::expansionDepth + 1), "nested more than 64 deep"},
        ErrorCase{"MasksTooDeep", chain("mask", "mask", limits::expansionDepth + 1), "nested more than 64 deep"}),
    nameOf);

TEST(References, ThatNothingDrawsAreNotFollowed) {
    EXPECT_THAT(errorOf(R"x(<pattern id="p" width="1" height="1"><rect width="1" height="1" fill="url(#p)"/></pattern>
        <mask id="m"><g mask="url(#m)"/></mask><defs><use id="u" xlink:href="#missing"/></defs>)x"),
                IsEmpty());
    EXPECT_THAT(errorOf(chain("pattern", "fill", limits::expansionDepth)), IsEmpty());
}

TEST(References, ManyToOneTextAreLimited) {
    const std::string longName(1 << 20, 'x');
    const std::string contents = "<style>g { font-family: " + longName + " }</style>" + repeated("<g/>", 1000);
    EXPECT_THAT(errorOf(contents), HasSubstr("MB of memory"));
}

TEST(ReferenceGraph, FindsCirclesAndDepths) {
    struct {
        std::vector<std::pair<ReferenceGraph::Node, ReferenceGraph::Node>> references;
        bool hasCircle;
        std::size_t depth;
    } const cases[] = {
        {{}, false, 1},      {{{0, 1}, {1, 2}, {0, 2}, {3, 2}}, false, 3}, {{{3, 0}, {0, 2}, {2, 1}}, false, 4},
        {{{0, 0}}, true, 0}, {{{0, 1}, {1, 2}, {2, 1}, {2, 3}}, true, 0},
    };
    for (const auto& [references, hasCircle, depth] : cases) {
        ReferenceGraph graph;
        for (ReferenceGraph::Node node = 0; node < 4; ++node) {
            EXPECT_EQ(graph.addNode(), node);
        }
        for (const auto& [from, to] : references) {
            graph.connect(from, to);
        }
        const auto shape = graph.shape();
        EXPECT_EQ(shape.inCircle.has_value(), hasCircle);
        EXPECT_EQ(shape.depth, depth);
    }
    ReferenceGraph graph;
    const std::vector nodes{graph.addNode(), graph.addNode(), graph.addNode()};
    graph.connect(nodes[0], nodes[1]);
    graph.connect(nodes[1], nodes[2]);
    graph.connect(nodes[2], nodes[1]);
    EXPECT_NE(graph.shape().inCircle, nodes[0]) << "it only leads to a circle";
}

}  // namespace
}  // namespace sorvik::draw::layer_tree
