#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/value_parser.h"
#include "test_attributes.h"

namespace sorvik::draw::testing {
namespace {

using Segment = dom::PathSegment;
using enum Segment::CoordinateSpace;
using ::testing::IsEmpty;
using ::testing::Optional;

struct Case {
    std::string_view text;
    std::vector<Segment> segments;
};

TEST(PathData, HasEveryCommandInBothSpaces) {
    const auto cases = std::to_array<Case>({
        {"M1,2m3;4", {{Segment::Move{1, 2, absolute}}, {Segment::Move{3, 4, relative}}}},
        {"L1 2l-3-4", {{Segment::Line{1, 2, absolute}}, {Segment::Line{-3, -4, relative}}}},
        {"H1h2", {{Segment::Horizontal{1, absolute}}, {Segment::Horizontal{2, relative}}}},
        {"V1v2", {{Segment::Vertical{1, absolute}}, {Segment::Vertical{2, relative}}}},
        {"C1 2 3 4 5 6 c.1.2.3.4.5.6",
         {{Segment::Cubic{1, 2, 3, 4, 5, 6, absolute}}, {Segment::Cubic{.1F, .2F, .3F, .4F, .5F, .6F, relative}}}},
        {"S1 2 3 4s5 6 7 8",
         {{Segment::CubicSmooth{1, 2, 3, 4, absolute}}, {Segment::CubicSmooth{5, 6, 7, 8, relative}}}},
        {"Q1 2 3 4q5 6 7 8", {{Segment::Quadratic{1, 2, 3, 4, absolute}}, {Segment::Quadratic{5, 6, 7, 8, relative}}}},
        {"T1 2t3 4", {{Segment::QuadraticSmooth{1, 2, absolute}}, {Segment::QuadraticSmooth{3, 4, relative}}}},
        {"A10 10 0 1 0 20 20", {{Segment::Arc{10, 10, 0, true, false, 20, 20, absolute}}}},
        {"A10,10,0,TRUE,FALSE,20,20", {{Segment::Arc{10, 10, 0, true, false, 20, 20, absolute}}}},
        {"a1 1 0 01 2 3", {{Segment::Arc{1, 1, 0, false, true, 2, 3, relative}}}},
        {"a1 1 0 012 3", {{Segment::Arc{1, 1, 0, false, true, 2, 3, relative}}}},
        {"M0 0Zz", {{Segment::Move{0, 0, absolute}}, {Segment::Close{}}, {Segment::Close{}}}},
    });
    for (const auto& [text, segments] : cases) {
        EXPECT_THAT(ValueParser::parsePathSegments(text), Optional(segments)) << text;
    }
}

TEST(PathData, RepeatsTheCommandAndGoesOnFromAMoveInLines) {
    const auto cases = std::to_array<Case>({
        {"M 1 2 3 4", {{Segment::Move{1, 2, absolute}}, {Segment::Line{3, 4, absolute}}}},
        {"m 1 2 3 4 5 6",
         {{Segment::Move{1, 2, relative}}, {Segment::Line{3, 4, relative}}, {Segment::Line{5, 6, relative}}}},
        {"h1 2", {{Segment::Horizontal{1, relative}}, {Segment::Horizontal{2, relative}}}},
        {"M1 2ZL3 4", {{Segment::Move{1, 2, absolute}}, {Segment::Close{}}, {Segment::Line{3, 4, absolute}}}},
    });
    for (const auto& [text, segments] : cases) {
        EXPECT_THAT(ValueParser::parsePathSegments(text), Optional(segments)) << text;
    }
    EXPECT_THAT(ValueParser::parsePathSegments(""), Optional(IsEmpty()));
    EXPECT_THAT(ValueParser::parsePathSegments(" \n\t"), Optional(IsEmpty()));
}

TEST(PathData, IsGoodAsAWholeOrNotAtAll) {
    for (const auto* const text :
         {"1 2", "M", "M1", "M1 2 3", "M,1,2", "M1,,2", "M1 2 X", "M1 2 # 3 4", "A1 1 0 2 0 1 1", "M0 0 Z 1 2",
          "M0 0z;", "M1e999 0", "M1e39 0", "Mnan 0", "M1 2 LL", "M 1in 2in"}) {
        EXPECT_FALSE(ValueParser::parsePathSegments(text)) << text;
    }
}

TEST(PathData, IsBounded) {
    EXPECT_EQ(ValueParser::parsePathSegments("M0 0" + repeated("h1", limits::pathSegments - 1))->size(),
              limits::pathSegments);
    EXPECT_EQ(errorOf([] { (void)ValueParser::parsePathSegments(repeated("Z", limits::pathSegments + 1)); }), "other");
}

}  // namespace
}  // namespace sorvik::draw::testing
