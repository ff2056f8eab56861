#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/value_parser.h"
#include "test_attributes.h"

namespace sorvik::draw::testing {
namespace {

using dom::Transform;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

TEST(TransformList, TakesEveryForm) {
    EXPECT_THAT(ValueParser::parseTransform("matrix(1,2 3 , 4 5,6)translate(1) translate(1 2)\nscale(3)scale(3,4) "
                                            "rotate(30) rotate( 30,1,2 ) skewX(5)skewY(-6e0) "),
                Optional(ElementsAre(Transform{Transform::Matrix{1, 2, 3, 4, 5, 6}},
                                     Transform{Transform::Translate{1, 0}}, Transform{Transform::Translate{1, 2}},
                                     Transform{Transform::Scale{3, 3}}, Transform{Transform::Scale{3, 4}},
                                     Transform{Transform::Rotate{30}}, Transform{Transform::RotatePoint{30, 1, 2}},
                                     Transform{Transform::SkewX{5}}, Transform{Transform::SkewY{-6}})));
    EXPECT_THAT(ValueParser::parseTransform(" "), Optional(IsEmpty()));
}

TEST(TransformList, TakesNothingElse) {
    for (const auto* const text :
         {"none",          "translate",         "translate()",           "translate(1,2,3)",
          "translate(1,)", "translate(,1)",     "translate(1,,2)",       "translate(1px)",
          "translate (1)", "translate(1",       "Translate(1)",          "translate(1),scale(2)",
          "scale(1) x",    "rotate(1,2)",       "rotate(1,2,3,4)",       "skewX(1,2)",
          "skewx(1)",      "matrix(1,2,3,4,5)", "matrix(1,2,3,4,5,6,7)", "matrix(1,2,3,4,5,6,)",
          "scale(1e999)"}) {
        EXPECT_FALSE(ValueParser::parseTransform(text)) << text;
    }
}

TEST(TransformList, IsBounded) {
    EXPECT_EQ(errorOf([] { (void)ValueParser::parseTransform(repeated("skewX(1)", limits::listItems + 1)); }), "other");
}

}  // namespace
}  // namespace sorvik::draw::testing
