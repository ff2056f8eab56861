#include <gtest/gtest.h>

#include "layers_testing.h"

namespace sorvik::draw::layer_tree {
namespace {

using namespace testing;

std::string converted(std::string_view d) {
    const Tree tree = built("<path d=\"" + std::string(d) + "\"/>");
    return written(std::get<Path>(shapeOf(child(tree)).shape.value));
}

struct PathCase {
    const char* name;
    const char* d;
    const char* absolute;
};

class PathConversion : public ::testing::TestWithParam<PathCase> {};

TEST_P(PathConversion, GivesAbsoluteLinesAndCubics) { EXPECT_EQ(converted(GetParam().d), GetParam().absolute); }

INSTANTIATE_TEST_SUITE_P(
    All, PathConversion,
    ::testing::Values(PathCase{"Lines", "M1 2 L3 4 l1 1 H9 h1 V8 v1", "M1 2 L3 4 L4 5 L9 5 L10 5 L10 8 L10 9"},
                      PathCase{"Cubics", "M1 1 C1 2 3 4 5 6 c1 2 3 4 5 6", "M1 1 C1 2 3 4 5 6 C6 8 8 10 10 12"},
                      PathCase{"SmoothAfterACubic", "M0 0 C1 2 3 4 5 6 S9 9 10 10", "M0 0 C1 2 3 4 5 6 C7 8 9 9 10 10"},
                      PathCase{"SmoothRelative", "M1 1 c1 2 3 4 5 6 s4 4 5 5", "M1 1 C2 3 4 5 6 7 C8 9 10 11 11 12"},
                      PathCase{"SmoothAfterALine", "M0 0 L5 6 S9 9 10 10", "M0 0 L5 6 C5 6 9 9 10 10"},
                      PathCase{"SmoothFirst", "S9 9 10 10", "C0 0 9 9 10 10"},
                      PathCase{"Quadratic", "M0 0 Q3 3 6 0 q3 3 6 0", "M0 0 C2 2 4 2 6 0 C8 2 10 2 12 0"},
                      PathCase{"QuadraticSmooth", "M0 0 Q3 3 6 0 T12 0", "M0 0 C2 2 4 2 6 0 C8 -2 10 -2 12 0"},
                      PathCase{"QuadraticSmoothRelative", "M0 0 Q3 3 6 0 t6 0", "M0 0 C2 2 4 2 6 0 C8 -2 10 -2 12 0"},
                      PathCase{"QuadraticSmoothAfterALine", "M0 0 L3 3 T9 9", "M0 0 L3 3 C3 3 5 5 9 9"},
                      PathCase{"CloseLeavesTheCurrentPoint", "M1 1 L5 5 Z l1 1", "M1 1 L5 5 Z L6 6"},
                      PathCase{"SmoothAfterClose", "M0 0 C1 2 3 4 5 6 Z S9 9 10 10",
                               "M0 0 C1 2 3 4 5 6 Z C5 6 9 9 10 10"},
                      PathCase{"ArcOfNothing", "M5 5 A0 10 0 0 1 9 9 l1 1", "M5 5 L6 6"},
                      PathCase{"ArcToItsStart", "M5 5 A10 10 0 0 1 5 5 L1 1", "M5 5 L1 1"}, PathCase{"Empty", "", ""}),
    nameOf);

TEST(PathConversion, GoesOnFromTheEndOfAnArc) {
    const Tree tree = built(R"(<path d="M10 0 a10 10 0 0 1 -10 10 l0 5"/>)");
    const auto& segments = std::get<Path>(shapeOf(child(tree)).shape.value).segments;
    ASSERT_GE(segments.size(), 3U);
    const Point end = std::get<PathSegment::Cubic>(segments[segments.size() - 2].value).to;
    const Point behind = std::get<PathSegment::Line>(segments.back().value).to;
    EXPECT_NEAR(end.x, 0, 1e-5);
    EXPECT_NEAR(end.y, 10, 1e-5);
    EXPECT_EQ(behind, (Point{end.x, end.y + 5}));
}

}  // namespace
}  // namespace sorvik::draw::layer_tree
