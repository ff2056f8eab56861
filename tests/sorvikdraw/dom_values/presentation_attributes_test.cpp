#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sorvikdraw/dom/presentation_fields.h"
#include "test_attributes.h"

namespace sorvik::draw::testing {
namespace {

using dom::Color;
using dom::ColorKeyword;
using dom::Fill;

// One good and one bad value for each, in the order of the fields; none is bad for some.
struct Row {
    std::string_view name, good;
    const char* bad;
};
constexpr auto rows = std::to_array<Row>({
    {"opacity", "50%", "50"},
    {"display", "none", "flex"},
    {"color", "red", "url(#a)"},
    {"stroke", "url(#a)", "x"},
    {"stroke-width", "2", "thick"},
    {"stroke-opacity", "0.5", "2"},
    {"stroke-linecap", "round", "miter"},
    {"stroke-linejoin", "bevel", "square"},
    {"stroke-dasharray", "1 2", "1 x"},
    {"fill", "#123", "#"},
    {"fill-opacity", "1", "-1"},
    {"fill-rule", "evenodd", "odd"},
    {"font-family", " Sans ", nullptr},
    {"font-size", "10px", "big"},
    {"text-anchor", "end", "right"},
    {"transform", "scale(2)", "scale()"},
    {"clip-path", "url(#c)", "none"},
    {"clip-rule", "nonzero", ""},
    {"mask", "url(#m)", "#m"},
    {"filter", "url(#f)", "blur(1)"},
});
static_assert(rows.size() == dom::presentationFields);

TEST(PresentationAttributes, AreReadEachIntoItsField) {
    Pairs all;
    for (const auto& row : rows) {
        all.push_back({row.name, row.good});
    }
    dom::PresentationAttributes expected;
    expected.opacity = 0.5F;
    expected.display = dom::DisplayMode::none;
    expected.color = Color{ColorKeyword::red};
    expected.stroke = Boxed<dom::URL>(dom::URL{"#a"});
    expected.strokeWidth = 2.0F;
    expected.strokeOpacity = 0.5F;
    expected.strokeLineCap = dom::LineCap::round;
    expected.strokeLineJoin = dom::LineJoin::bevel;
    expected.strokeDashArray = std::vector<float>{1, 2};
    expected.fill = Color{Color::Hex{0x11, 0x22, 0x33}};
    expected.fillOpacity = 1.0F;
    expected.fillRule = dom::FillRule::evenodd;
    expected.fontFamily = std::string("Sans");
    expected.fontSize = 10.0F;
    expected.textAnchor = dom::TextAnchor::end;
    expected.transform = std::vector{dom::Transform{dom::Transform::Scale{2, 2}}};
    expected.clipPath = dom::URL{"#c"};
    expected.clipRule = dom::FillRule::nonzero;
    expected.mask = dom::URL{"#m"};
    expected.filter = dom::URL{"#f"};
    EXPECT_TRUE(presentation(all) == expected);
    EXPECT_EQ(dom::setFields(expected), (1U << dom::presentationFields) - 1);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(presentationAttributeIndex(rows[i].name), i);
        EXPECT_EQ(dom::setFields(presentation({{rows[i].name, rows[i].good}})), 1U << i) << rows[i].name;
    }
}

TEST(PresentationAttributes, AreNotTakenForOthers) {
    for (const auto* const name : {"", "x", "fil", "fills", "Fill", "xlink:href", "stroke-miterlimit", "style",
                                   "stroke_width", "stroke-dasharray2", "a-name-longer-than-any"}) {
        EXPECT_EQ(presentationAttributeIndex(name), std::nullopt) << name;
    }
    EXPECT_FALSE(anyPresentationAttribute(Pairs{{"x", "1"}, {"d", "M"}}));
    EXPECT_TRUE(anyPresentationAttribute(Pairs{{"x", "1"}, {"mask", ""}}));
    EXPECT_EQ(dom::setFields(presentation({{"x", "1"}, {"stroke-miterlimit", "bad"}})), 0U);
}

TEST(PresentationAttributes, AreAbsentOrAnErrorWhenBad) {
    for (const auto& row : rows) {
        if (row.bad == nullptr) {
            continue;
        }
        const Pairs bad{{"fill-opacity", "1"}, {row.name, row.bad}};
        const auto error = "invalid: " + std::string(row.name) + "=" + row.bad;
        EXPECT_EQ(errorOf([&] { (void)presentation({bad.back()}); }), error);
        // A bad transform is an error whatever the options.
        const bool skipped = row.name != "transform";
        EXPECT_EQ(errorOf([&] { (void)presentation({bad.back()}, {}, skipInvalidAttributes); }), skipped ? "" : error);
        if (skipped) {
            EXPECT_EQ(dom::setFields(presentation({bad.back()}, {}, skipInvalidAttributes)), 0U) << row.name;
        }
    }
}

TEST(PresentationAttributes, ReportTheFirstBadOneInTheOrderOfTheFields) {
    EXPECT_EQ(errorOf([] {
                  (void)presentation({{"filter", "x"}, {"fill", "x"}, {"opacity", "x"}, {"mask", "x"}});
              }),
              "invalid: opacity=x");
    EXPECT_EQ(errorOf([] { (void)presentation({{"clip-rule", "x"}, {"clip-path", "y"}}); }), "invalid: clip-path=y");
}

TEST(PresentationAttributes, OfStyleWin) {
    const Pairs blue{{"fill", "blue"}};
    const auto fillOf = [](const dom::PresentationAttributes& attributes) { return attributes.fill; };
    EXPECT_EQ(fillOf(presentation(blue, {{"fill", "red"}})), Fill(Color{ColorKeyword::red}));
    EXPECT_EQ(fillOf(presentation(blue, {{"fill", "nonsense"}}, skipInvalidAttributes)),
              Fill(Color{ColorKeyword::blue}));
    EXPECT_EQ(errorOf([&] { (void)presentation(blue, {{"fill", "nonsense"}}); }), "invalid: fill=nonsense");
    EXPECT_EQ(fillOf(presentation({}, {{"fill", "red"}, {"fill", "lime"}})), Fill(Color{ColorKeyword::lime}));
    EXPECT_EQ(errorOf([&] {
                  (void)presentation({{"transform", "scale(2)"}}, {{"transform", "x"}}, skipInvalidAttributes);
              }),
              "invalid: transform=x");
}

TEST(PresentationAttributes, SayNothingOfDashesWithTheWordNone) {
    EXPECT_FALSE(presentation({{"stroke-dasharray", " none "}}).strokeDashArray);
    EXPECT_FALSE(presentation({{"stroke-dasharray", "1 2"}}, {{"stroke-dasharray", "none"}}).strokeDashArray);
    EXPECT_THAT(*presentation({{"stroke-dasharray", " "}}).strokeDashArray, ::testing::IsEmpty());
}

TEST(Boxed, SharesUntilItIsWrittenTo) {
    Boxed<std::vector<int>> a(std::vector{1, 2});
    Boxed<std::vector<int>> b = a;
    EXPECT_EQ(&*std::as_const(a), &*std::as_const(b));
    b->push_back(3);
    EXPECT_THAT(*std::as_const(a), ::testing::ElementsAre(1, 2));
    EXPECT_THAT(*std::as_const(b), ::testing::ElementsAre(1, 2, 3));
    EXPECT_FALSE(a == b);
    a = b;
    EXPECT_TRUE(a == b);
    a = Boxed<std::vector<int>>();
    EXPECT_FALSE(a.has_value());
    EXPECT_TRUE(b.has_value());
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a == Boxed<std::vector<int>>());
}

}  // namespace
}  // namespace sorvik::draw::testing
