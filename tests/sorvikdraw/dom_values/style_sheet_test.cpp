#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/presentation_fields.h"
#include "sorvikdraw/dom/style_sheet_parser.h"
#include "test_attributes.h"

namespace sorvik::draw::testing {
namespace {

using Rules = std::vector<std::pair<std::string, Pairs>>;

// The selectors of a sheet in their order, an id as "#a", a class as ".a", each with what it should come to.
std::string signOf(dom::StyleSheet::Selector::Kind kind) {
    using Kind = dom::StyleSheet::Selector::Kind;
    return kind == Kind::id ? "#" : kind == Kind::className ? "." : "";
}

void expectRules(std::string_view text, const Rules& expected) {
    SCOPED_TRACE(text);
    const auto sheet = StyleSheetParser().parse(text);
    ASSERT_EQ(sheet.attributes.size(), expected.size());
    auto rule = sheet.attributes.begin();
    for (const auto& [selector, pairs] : expected) {
        EXPECT_EQ(signOf(rule->first.kind) + rule->first.name, selector);
        EXPECT_TRUE(rule->second == presentation(pairs)) << selector;
        ++rule;
    }
}

TEST(StyleSheet, GivesARuleToEachOfItsSelectors) {
    const Pairs red{{"fill", "red"}};
    expectRules("", {});
    expectRules(" \n ", {});
    expectRules("a, .b, #c { fill: red }", {{"#c", red}, {"a", red}, {".b", red}});
    expectRules("a,{fill:red}", {{"a", red}});
    expectRules(". a{fill:red}", {{".a", red}});
    expectRules("g .a{fill:red}", {{"g .a", red}});
    expectRules("a{}", {{"a", {}}});
    expectRules("b{fill:red}a{fill:red}B{fill:red}", {{"B", red}, {"a", red}, {"b", red}});
}

TEST(StyleSheet, LetsLaterDeclarationsReplaceEarlierOnes) {
    expectRules(".a{fill:red}.a{stroke:blue}", {{".a", {{"fill", "red"}, {"stroke", "blue"}}}});
    expectRules(".a{fill:red;stroke:lime}.a,.b{fill:blue}",
                {{".a", {{"fill", "blue"}, {"stroke", "lime"}}}, {".b", {{"fill", "blue"}}}});
    expectRules("a{fill:red;fill:blue}", {{"a", {{"fill", "blue"}}}});
    expectRules("a{fill:nonsense;fill:blue}", {{"a", {{"fill", "blue"}}}});
}

TEST(StyleSheet, EndsAValueAtSemicolonLineFeedOrBrace) {
    const Pairs both{{"fill", "red"}, {"stroke", "blue"}};
    expectRules("a{fill:red;stroke:blue}", {{"a", both}});
    expectRules("a{fill:red\nstroke:blue\n}", {{"a", both}});
    expectRules("a { fill : red\n;\n stroke\n:\n\nblue ; }", {{"a", both}});
}

TEST(StyleSheet, KeepsOnlyPresentationAttributes) {
    expectRules("a{cursor:pointer;fill:red;-x-y:;marker:none}", {{"a", {{"fill", "red"}}}});
    expectRules("a{stroke-dasharray:none;font-family: Sans }", {{"a", {{"font-family", "Sans"}}}});
}

TEST(StyleSheet, LosesCommentsWithinALine) {
    const Pairs red{{"fill", "red"}};
    expectRules("/* a */a{fill:red}", {{"a", red}});
    expectRules("a{fill:/**/red}", {{"a", red}});
    expectRules("a{fill:r/* x */ed}", {{"a", red}});
    expectRules("/* a */ .x{} /* b */", {});
    expectRules("/* a */ .x{} /* b */\n/**/.y{fill:red}", {{".y", red}});
    expectRules("/*/*/a{fill:red}", {{"a", red}});
}

TEST(StyleSheet, KeepsCommentsOverSeveralLinesAsText) {
    const Pairs red{{"fill", "red"}};
    for (const std::string_view end : {"\n", "\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        const auto comment = "/* over" + std::string(end) + "lines */";
        expectRules(comment + " .a{fill:red}", {{comment + " .a", red}});
    }
    expectRules("/* \xC3\x85\xE2\x80\xA7 */a{fill:red}", {{"a", red}});
}

TEST(StyleSheet, GoesOnFromWhereOddTextLeavesIt) {
    const Pairs red{{"fill", "red"}};
    expectRules("a{fill:red}{fill:blue}b{fill:blue}", {{"a", red}});
    expectRules("a{fill:red},b{fill:blue}", {{"a", red}});
    expectRules("a,,b{fill:blue}c{fill:red}", {{"a", {}}, {"c", red}});
    expectRules("a{};b{fill:red}", {{";b", red}, {"a", {}}});
    expectRules("@media print{fill:red}", {{"@media print", red}});
    expectRules("a{x} b{fill:red}", {{"a", {}}});
}

TEST(StyleSheet, IsBoundedOverAllSheetsOfADocument) {
    std::string many;
    for (std::size_t i = 0; i < limits::selectors; ++i) {
        many += "a" + std::to_string(i) + "{}";
    }
    StyleSheetParser parser;
    EXPECT_EQ(parser.parse(many).attributes.size(), limits::selectors);
    EXPECT_EQ(errorOf([&] { (void)parser.parse("a{}"); }), "other");
    EXPECT_EQ(errorOf([&] { (void)StyleSheetParser().parse(std::string(limits::styleSheetBytes + 1, ' ')); }), "other");
    // Few bytes, but a long value for each of many selectors.
    const auto list = repeated("a,", 10'000) + "{stroke-dasharray:" + repeated("1 ", 10'000) + "}";
    EXPECT_EQ(errorOf([&] { (void)StyleSheetParser().parse(list); }), "other");
}

TEST(StyleSheet, IsBadAsAWhole) {
    for (const auto* const text : {"a", "a{", "a{fill:red", "a{fill}", "a{fill:red;}b{fill}", "a{:red}", "/*\n*/",
                                   "a{} /* over\nlines */ b", "/*/", "a{fill:red}}", "a,,b{fill:red}c", "a{}/*"}) {
        EXPECT_EQ(errorOf([&] { (void)StyleSheetParser().parse(text); }), "invalid") << text;
    }
    EXPECT_EQ(errorOf([] { (void)StyleSheetParser().parse("b{fill:red}.a{fill:nonsense}"); }),
              "invalid: fill=nonsense");
    EXPECT_EQ(errorOf([] { (void)StyleSheetParser().parse(".a{fill:}"); }), "invalid: fill=");
}

}  // namespace
}  // namespace sorvik::draw::testing
