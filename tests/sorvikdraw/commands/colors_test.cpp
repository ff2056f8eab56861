#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "sorvikdraw/engine/cg_provider.h"
#include "sorvikdraw/engine/color_converter.h"
#include "sorvikdraw/engine/p3_color.h"

namespace sorvik::draw {
namespace {

using layer_tree::Color;
using layer_tree::ColorSpace;
using layer_tree::Gray;
using layer_tree::LuminanceColorConverter;
using layer_tree::NoColor;
using layer_tree::RGBA;
using layer_tree::toSRGB;

constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(Colors, DisplayP3IsBroughtToSRGB) {
    const struct {
        RGBA p3, srgb;
    } cases[] = {
        {{0, 0, 0}, {0, 0, 0}},
        {{1, 1, 1}, {1, 1, 1}},
        {{0.5F, 0.5F, 0.5F}, {0.5F, 0.5F, 0.5F}},
        {{1, 0, 0}, {1, 0, 0}},  // beyond what sRGB shows
        {{0, 1, 0}, {0, 1, 0}},
        {{0.8F, 0.4F, 0.2F, 0.5F}, {0.85957F, 0.37040F, 0.12343F, 0.5F}},
        {{0.25F, 0.5F, 0.75F}, {0.12408F, 0.50735F, 0.77113F}},
        {{-3, NAN, 0}, {0, 0, 0}},
        {{infinity, infinity, infinity, infinity}, {0, 0, 0, 1}},
    };
    for (const auto& [p3, srgb] : cases) {
        SCOPED_TRACE(p3.r);
        const RGBA result = toSRGB({p3.r, p3.g, p3.b, p3.a, ColorSpace::p3});
        EXPECT_NEAR(result.r, srgb.r, 1e-4F);
        EXPECT_NEAR(result.g, srgb.g, 1e-4F);
        EXPECT_NEAR(result.b, srgb.b, 1e-4F);
        EXPECT_EQ(result.a, srgb.a);
        EXPECT_EQ(result.space, ColorSpace::srgb);
    }
}

TEST(Colors, LuminanceBecomesAlpha) {
    const struct {
        Color color;
        float alpha;
    } cases[] = {
        {RGBA{1, 1, 1, 1}, 1},       {RGBA{0, 0, 0, 1}, 0},          {RGBA{1, 0, 0, 1}, 0.2126F},
        {RGBA{0, 1, 0, 1}, 0.7152F}, {RGBA{0, 0, 1, 0.5F}, 0.0361F}, {Gray{0.5F, 0.5F}, 0.25F},
        {RGBA{1, 1, 1, 7}, 1},       {Gray{3, 0.5F}, 0.5F},
    };
    for (const auto& [color, alpha] : cases) {
        const Color result = LuminanceColorConverter::createColor(color);
        ASSERT_TRUE(std::holds_alternative<Gray>(result));
        EXPECT_EQ(std::get<Gray>(result).white, 0);
        EXPECT_FLOAT_EQ(std::get<Gray>(result).a, alpha);
    }
    EXPECT_EQ(LuminanceColorConverter::createColor(NoColor{}), Color(NoColor{}));
    const RGBA p3{0.8F, 0.4F, 0.2F, 1, ColorSpace::p3};
    EXPECT_EQ(LuminanceColorConverter::createColor(p3), LuminanceColorConverter::createColor(toSRGB(p3)));
}

TEST(Colors, BackEndColorsAreWithinTheirRange) {
    EXPECT_EQ(CGProvider::createColor(RGBA{0.25F, 2, -1, 1.5F}), (CGColor{0.25F, 1, 0, 1}));
    EXPECT_EQ(CGProvider::createColor(Gray{0.25F, 0.5F}), (CGColor{0.25F, 0.25F, 0.25F, 0.5F}));
    EXPECT_EQ(CGProvider::createColor(NoColor{}), (CGColor{0, 0, 0, 0}));
}

}  // namespace
}  // namespace sorvik::draw
