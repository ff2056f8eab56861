#include "sorvikdraw/dom/cascade.h"

#include <gtest/gtest.h>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/style_sheet_parser.h"
#include "test_attributes.h"

namespace sorvik::draw::testing {
namespace {

using dom::Cascade;
using dom::Color;
using dom::ColorKeyword;
using dom::Fill;
using dom::GraphicsElement;
using dom::PresentationAttributes;

struct Parts {
    GraphicsElement::Kind kind = dom::Rect();
    std::string className = {};
    std::string id = {};
    Pairs attributes = {};
    Pairs style = {};
};

GraphicsElement element(Parts parts) {
    GraphicsElement made{std::move(parts.kind), {}, {}, nullptr, nullptr};
    if (!parts.className.empty()) {
        made.className = std::move(parts.className);
    }
    if (!parts.id.empty()) {
        made.id = std::move(parts.id);
    }
    made.attributes = std::make_shared<PresentationAttributes>(presentation(parts.attributes));
    made.style = std::make_shared<PresentationAttributes>(presentation(parts.style));
    return made;
}

std::vector<dom::StyleSheet> sheets(std::initializer_list<std::string_view> texts) {
    std::vector<dom::StyleSheet> made;
    for (const auto text : texts) {
        made.push_back(StyleSheetParser().parse(text));
    }
    return made;
}

struct Case {
    std::vector<std::string_view> sheets;
    Parts parts;
    std::string_view fill;  ///< empty: none
};

TEST(Cascade, LaysTheStrongerOverTheWeaker) {
    const Pairs green{{"fill", "green"}};
    const std::vector<Case> cases{
        {{}, {.attributes = green}, "green"},
        {{}, {.attributes = green, .style = {{"fill", "blue"}}}, "blue"},
        {{".a{fill:red}"}, {.className = "a", .attributes = green}, "red"},
        {{".a{fill:red}"}, {.className = "a", .attributes = green, .style = {{"fill", "blue"}}}, "blue"},
        {{"rect{fill:red}"}, {.attributes = green}, "red"},
        {{".a{fill:lime}rect{fill:red}"}, {.className = "a"}, "lime"},
        {{"#i{fill:navy}.a{fill:lime}rect{fill:red}"}, {.className = "a", .id = "i", .attributes = green}, "navy"},
        // Of classes the one that the element names last.
        {{".a {fill:red} .b {fill:blue}"}, {.className = "b a"}, "red"},
        {{".a {fill:red} .b {fill:blue}"}, {.className = " a  b c "}, "blue"},
        {{".a {fill:red} .b {stroke:blue}"}, {.className = "a b"}, "red"},
        // Of sheets the later, for one selector; the kind of the selector counts for more.
        {{"rect{fill:red}", "rect{fill:blue}"}, {}, "blue"},
        {{"#i{fill:red}", ".a{fill:blue}"}, {.className = "a", .id = "i"}, "red"},
        {{"rect{fill:red}", "rect{stroke:blue}"}, {}, "red"},
        // What matches nothing.
        {{"g .a{fill:red}"}, {.className = "a"}, ""},
        {{".A{fill:red}.i{fill:red}#a{fill:red}a{fill:red}"}, {.className = "a", .id = "i"}, ""},
    };
    for (const auto& one : cases) {
        std::vector<dom::StyleSheet> styles;
        for (const auto text : one.sheets) {
            styles.push_back(StyleSheetParser().parse(text));
        }
        const auto fill = Cascade(styles).presentationAttributes(element(one.parts))->fill;
        const auto keyword = dom::colorKeyword(one.fill);
        EXPECT_EQ(fill, keyword ? std::optional<Fill>(Color{*keyword}) : std::nullopt)
            << one.fill << ' ' << (one.sheets.empty() ? "" : one.sheets.front());
    }
}

TEST(Cascade, KnowsElementsByTheirNames) {
    dom::SVG nested;
    const std::pair<GraphicsElement::Kind, std::string_view> kinds[] = {
        {dom::Line(), "line"},
        {dom::Circle(), "circle"},
        {dom::Ellipse(), "ellipse"},
        {dom::Rect(), "rect"},
        {dom::Polyline(), "polyline"},
        {dom::Polygon(), "polygon"},
        {dom::Path(), "path"},
        {dom::Text(), "text"},
        {dom::Group(), "g"},
        {dom::Anchor(), "a"},
        {Boxed(dom::Image()), "image"},
        {dom::NestedSVG{&nested}, "svg"},
        {dom::Use(), ""},
        {dom::Switch(), ""},
    };
    static_assert(std::size(kinds) == std::variant_size_v<GraphicsElement::Kind>);
    constexpr std::string_view names =
        "line circle ellipse rect polyline polygon path text g a image svg use switch mask";
    for (const auto& [kind, name] : kinds) {
        for (std::size_t at = 0; at < names.size(); at = names.find(' ', at) + 1) {
            const auto selector = names.substr(at, names.find(' ', at) - at);
            const auto styles = sheets({std::string(selector) + "{opacity:0.5}"});
            const auto opacity = Cascade(styles).presentationAttributes(element({.kind = kind}))->opacity;
            EXPECT_EQ(opacity.has_value(), !name.empty() && selector == name) << selector;
            if (names.find(' ', at) == std::string_view::npos) {
                break;
            }
        }
    }
}

TEST(Cascade, TakesEveryFieldOfARule) {
    const Pairs all{{"opacity", "0.5"},
                    {"display", "none"},
                    {"color", "red"},
                    {"stroke", "red"},
                    {"stroke-width", "2"},
                    {"stroke-opacity", "0.5"},
                    {"stroke-linecap", "round"},
                    {"stroke-linejoin", "bevel"},
                    {"stroke-dasharray", "1"},
                    {"fill", "red"},
                    {"fill-opacity", "0.5"},
                    {"fill-rule", "evenodd"},
                    {"font-family", "x"},
                    {"font-size", "3"},
                    {"text-anchor", "end"},
                    {"transform", "scale(2)"},
                    {"clip-path", "url(#a)"},
                    {"clip-rule", "evenodd"},
                    {"mask", "url(#a)"},
                    {"filter", "url(#a)"}};
    std::string rule = "rect{";
    for (const auto& pair : all) {
        rule += std::string(pair.name) + ":" + std::string(pair.value) + ";";
    }
    const auto styles = sheets({rule + "}"});
    const auto opaque = element({.attributes = {{"opacity", "1"}, {"stroke-dasharray", "7"}}});
    EXPECT_TRUE(*Cascade(styles).presentationAttributes(opaque) == presentation(all));
    const auto styled = element({.style = {{"fill", "blue"}}});
    auto expected = presentation(all);
    expected.fill = Color{ColorKeyword::blue};
    EXPECT_TRUE(*Cascade(styles).presentationAttributes(styled) == expected);
}

TEST(Cascade, HandsOutAnElementsOwnRecordWhereNothingIsLaidOverIt) {
    const auto styles = sheets({".a{fill:red}"});
    Cascade cascade(styles);
    const auto plain = element({.className = "b", .attributes = {{"fill", "green"}}});
    EXPECT_EQ(cascade.presentationAttributes(plain), plain.attributes);
    const auto styled = element({.style = {{"fill", "green"}}});
    EXPECT_EQ(cascade.presentationAttributes(styled), styled.style);
    EXPECT_EQ(cascade.presentationAttributes(element({.className = "a"}))->fill, Fill(Color{ColorKeyword::red}));
}

TEST(Cascade, ServesMasksAndTheRoot) {
    const auto styles = sheets({"mask{opacity:0.1}svg{opacity:0.5}.a{opacity:0.2}#m{stroke-width:3}"});
    Cascade cascade(styles);
    dom::Mask mask;
    mask.id = "m";
    mask.className = "a";
    mask.attributes = presentation({{"stroke-width", "1"}, {"font-size", "9"}});
    mask.style = presentation({{"fill", "red"}});
    EXPECT_TRUE(cascade.presentationAttributes(mask) ==
                presentation({{"opacity", "0.2"}, {"stroke-width", "3"}, {"font-size", "9"}, {"fill", "red"}}));
    dom::SVG root;
    root.attributes = presentation({{"opacity", "1"}, {"fill", "red"}});
    EXPECT_TRUE(cascade.presentationAttributes(root) == presentation({{"opacity", "0.5"}, {"fill", "red"}}));
}

TEST(Cascade, BoundsTheClassesItLooksUp) {
    const auto styles = sheets({".a{fill:red}"});
    const auto many = element({.className = repeated("b ", 100'000) + "a"});
    Cascade cascade(styles);
    EXPECT_EQ(cascade.presentationAttributes(many)->fill, Fill(Color{ColorKeyword::red}));
    EXPECT_EQ(errorOf([&] {
                  for (std::size_t i = 0; i <= limits::classNames / 100'000; ++i) {
                      (void)cascade.presentationAttributes(many);
                  }
              }),
              "other");
}

}  // namespace
}  // namespace sorvik::draw::testing
