#include <gtest/gtest.h>

#include <array>
#include <string>

#include "sorvikdraw/dom/value_parser.h"

namespace sorvik::draw::testing {
namespace {

using dom::Color;
using dom::ColorKeyword;
using dom::Fill;

struct Case {
    std::string_view text;
    std::optional<Fill> fill;
};

Fill urlFill(std::string text) { return Boxed<dom::URL>(dom::URL{std::move(text)}); }

TEST(Fill, TakesEveryForm) {
    const auto cases = std::to_array<Case>({
        {"rgb(10%, 20%,30%)", Color{Color::RGBf{0.1F, 0.2F, 0.3F, 1}}},
        {"rgb(0,0,0)", Color{Color::RGBf{0, 0, 0, 1}}},
        {"rgb(1,2,3)", Color{Color::RGBi{1, 2, 3, 1}}},
        {" \n rgb( 1 , 2 , 255 ) rest", Color{Color::RGBi{1, 2, 255, 1}}},
        {"rgb(1,2,3,50%)", Color{Color::RGBi{1, 2, 3, 0.5F}}},
        {"rgb(1,2,3,7)", Color{Color::RGBi{1, 2, 3, 7}}},
        {"rgba(1,2,3,0.25)", Color{Color::RGBi{1, 2, 3, 0.25F}}},
        {"rgba(10%,20%,30%,0.5)", Color{Color::RGBf{0.1F, 0.2F, 0.3F, 0.5F}}},
        {"rgba(0,0,0,50%)", Color{Color::RGBi{0, 0, 0, 0.5F}}},
        {"rgba(0,0,0,.5)", Color{Color::RGBf{0, 0, 0, 0.5F}}},
        {"#aabbcc", Color{Color::Hex{0xAA, 0xBB, 0xCC}}},
        {"#AbC", Color{Color::Hex{0xAA, 0xBB, 0xCC}}},
        {"#ab", Color{Color::Hex{0, 0, 171}}},
        {"#ff0000ff", Color{Color::Hex{0, 0, 255}}},
        {"#0123456789abcdef", Color{Color::Hex{0xAB, 0xCD, 0xEF}}},
        {"#12345g", Color{Color::Hex{1, 0x23, 0x45}}},
        {"color(display-p3 1, 0.5,-2)", Color{Color::P3{1, 0.5F, -2}}},
        {" currentColor ", Color{Color::CurrentColor{}}},
        {"\nred\n", Color{ColorKeyword::red}},
        {"none", Color{Color::None{}}},
        {"transparent", Color{Color::None{}}},
        {"url(#a)", urlFill("#a")},
        {"url( \t#a ) none", urlFill("#a")},
        {"url(other.svg#b)", urlFill("other.svg#b")},
    });
    for (const auto& [text, fill] : cases) {
        EXPECT_TRUE(ValueParser::parseFill(text) == fill) << text;
    }
}

TEST(Fill, TakesNothingElse) {
    for (const auto* const text : {"",
                                   "  ",
                                   "Red",
                                   "red blue",
                                   "rgb(1.5, 2, 3)",
                                   "rgb(256,0,0)",
                                   "rgb(-1,0,0)",
                                   "rgb(1 2 3)",
                                   "rgb(1,2,3",
                                   "rgb(10%,20%,30%,0.5)",
                                   "rgb (1,2,3)",
                                   "rgb(1%,2,3)",
                                   "rgb(1,2,3,)",
                                   "rgba(1,2,3)",
                                   "rgba(1%,2%,3%)",
                                   "rgba(1,2,3,x)",
                                   "#",
                                   "#xyz",
                                   "#123456789abcdef01",
                                   "color(display-p3 1 0 0)",
                                   "color(display-p3 1,0)",
                                   "color(srgb 1,0,0)",
                                   "currentcolor",
                                   "url(#a",
                                   "url()",
                                   "url( )",
                                   "url(a b)",
                                   "hsl(0,0%,0%)",
                                   "x rgb(1,2,3)"}) {
        EXPECT_FALSE(ValueParser::parseFill(text)) << text;
    }
}

TEST(Fill, IsAColorOnlyWithoutReference) {
    EXPECT_EQ(ValueParser::parseColor("#fff"), (Color{Color::Hex{255, 255, 255}}));
    EXPECT_EQ(ValueParser::parseColor("url(#a)"), std::nullopt);
    EXPECT_EQ(ValueParser::parseColor("nonsense"), std::nullopt);
}

TEST(ColorKeywords, AreAllFoundByName) {
    for (const auto& row : dom::colorKeywords) {
        EXPECT_EQ(dom::colorKeyword(row.name), row.keyword) << row.name;
        EXPECT_EQ(dom::rgbOf(row.keyword), row.rgb);
    }
    for (const auto* const name : {"", "a", "aliceblu", "aliceblues", "zebra", "GREEN", "transparent"}) {
        EXPECT_EQ(dom::colorKeyword(name), std::nullopt) << name;
    }
}

// Where the table of X11 differs, and every name that has two spellings.
TEST(ColorKeywords, HaveTheColoursOfTheWeb) {
    EXPECT_EQ(dom::rgbOf(ColorKeyword::gray), 0x808080U);
    EXPECT_EQ(dom::rgbOf(ColorKeyword::green), 0x008000U);
    EXPECT_EQ(dom::rgbOf(ColorKeyword::maroon), 0x800000U);
    EXPECT_EQ(dom::rgbOf(ColorKeyword::purple), 0x800080U);
    EXPECT_EQ(dom::rgbOf(ColorKeyword::aqua), dom::rgbOf(ColorKeyword::cyan));
    EXPECT_EQ(dom::rgbOf(ColorKeyword::fuchsia), dom::rgbOf(ColorKeyword::magenta));
    std::size_t pairs = 0;
    for (const auto& row : dom::colorKeywords) {
        std::string name(row.name);
        if (const auto at = name.find("grey"); at != std::string::npos) {
            name[at + 2] = 'a';
            EXPECT_EQ(row.rgb, dom::rgbOf(dom::colorKeyword(name).value())) << name;
            ++pairs;
        }
    }
    EXPECT_EQ(pairs, 7U);
}

}  // namespace
}  // namespace sorvik::draw::testing
