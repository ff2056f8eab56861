#include "sorvikdraw/dom/attribute_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/value_parser.h"
#include "test_attributes.h"

namespace sorvik::draw::testing {
namespace {

struct LookupCase {
    const char* style;  ///< null: not there
    const char* element;
    XMLParserOptions options;
    std::optional<float> value;
    std::string requiredError, optionalError;
};

TEST(AttributeParser, LetsStyleWinAndFallsBackOnlyWhenToldTo) {
    const auto cases = std::to_array<LookupCase>({
        {nullptr, nullptr, noOptions, {}, "missing: r", ""},
        {nullptr, nullptr, skipInvalidAttributes, {}, "missing: r", ""},
        {nullptr, "2", noOptions, 2.0F, "", ""},
        {"1", nullptr, noOptions, 1.0F, "", ""},
        {"1", "2", noOptions, 1.0F, "", ""},
        {"1", "bad", noOptions, 1.0F, "", ""},
        {nullptr, "bad", noOptions, {}, "invalid: r=bad", "invalid: r=bad"},
        {nullptr, "bad", skipInvalidAttributes, {}, "invalid: r=bad", ""},
        {"bad", "2", noOptions, {}, "invalid: r=bad", "invalid: r=bad"},
        {"bad", "2", skipInvalidAttributes, 2.0F, "", ""},
        {"bad", "worse", skipInvalidAttributes, {}, "invalid: r=worse", ""},
        {"bad", nullptr, noOptions, {}, "invalid: r=bad", "invalid: r=bad"},
        {"bad", nullptr, skipInvalidAttributes, {}, "missing: r", ""},
        {"bad", "2", skipInvalidElements, {}, "invalid: r=bad", "invalid: r=bad"},
    });
    for (const auto& one : cases) {
        SCOPED_TRACE(::testing::Message() << (one.style != nullptr ? one.style : "-") << ' '
                                          << (one.element != nullptr ? one.element : "-") << ' ' << one.options);
        const Pairs style = one.style != nullptr ? Pairs{{"q", "7"}, {"r", one.style}} : Pairs{};
        const Pairs element = one.element != nullptr ? Pairs{{"r", one.element}, {"rx", "9"}} : Pairs{};
        const AttributeParser attributes(one.options, element, style);
        const auto required = [&] { return attributes.parse("r", ValueParser::parseFloat); };
        const auto optional = [&] { return attributes.parseOptional("r", ValueParser::parseFloat); };
        EXPECT_EQ(errorOf(required), one.requiredError);
        EXPECT_EQ(errorOf(optional), one.optionalError);
        EXPECT_EQ(attributes.tryParse("r", ValueParser::parseFloat), one.value);
        if (one.value) {
            EXPECT_EQ(required(), *one.value);
            EXPECT_EQ(optional(), one.value);
        }
    }
}

TEST(AttributeParser, DoesNotSkipWhatIsBeyondALimit) {
    const auto tooMany = repeated("1 ", limits::listItems + 1);
    const Pairs element{{"points", tooMany}};
    const AttributeParser attributes(skipInvalidAttributes, element);
    EXPECT_EQ(errorOf([&] { (void)attributes.parseOptional("points", ValueParser::parseFloats); }), "other");
}

TEST(AttributeParser, ReadsEnumerationsAndStrings) {
    const Pairs element{{"a", " evenodd\t"}, {"b", "\nevenodd"}, {"c", "inline"}, {"d", " as it is "}, {"e", "Inline"}};
    const AttributeParser attributes(noOptions, element);
    EXPECT_EQ(attributes.parse("a", ValueParser::parseRaw<dom::FillRule>), dom::FillRule::evenodd);
    EXPECT_EQ(attributes.tryParse("b", ValueParser::parseRaw<dom::FillRule>), std::nullopt);
    EXPECT_EQ(attributes.parse("c", ValueParser::parseRaw<dom::DisplayMode>), dom::DisplayMode::inlined);
    EXPECT_EQ(attributes.parse("d", ValueParser::parseString), " as it is ");
    EXPECT_EQ(attributes.tryParse("e", ValueParser::parseRaw<dom::DisplayMode>), std::nullopt);
    EXPECT_EQ(ValueParser::parseRaw<dom::Units>("objectBoundingBox"), dom::Units::objectBoundingBox);
    EXPECT_EQ(ValueParser::parseRaw<dom::LineCap>("square"), dom::LineCap::square);
    EXPECT_EQ(ValueParser::parseRaw<dom::LineJoin>("square"), std::nullopt);
    EXPECT_EQ(ValueParser::parseRaw<dom::TextAnchor>("middle"), dom::TextAnchor::middle);
}

struct StyleCase {
    std::string_view text;
    Pairs pairs;
};

TEST(Style, IsSplitIntoPairs) {
    const auto cases = std::to_array<StyleCase>({
        {"", {}},
        {" \n ", {}},
        {"fill:red", {{"fill", "red"}}},
        {" fill\t: red ;\n stroke :blue; ", {{"fill", "red"}, {"stroke", "blue"}}},
        {"fill:;stroke:", {{"fill", ""}, {"stroke", ""}}},
        {"a:b:c", {{"a", "b:c"}}},
        {"a:1;;b:2", {{"a", "1"}, {";b", "2"}}},
        {"a:1;a:2", {{"a", "1"}, {"a", "2"}}},
    });
    for (const auto& [text, pairs] : cases) {
        EXPECT_EQ(splitStyle(text), pairs) << text;
    }
    for (const auto* const bad : {"fill", "fill:red;stroke", ":red", "a:1;:2", ";", "a:1;;"}) {
        EXPECT_EQ(errorOf([&] { (void)splitStyle(bad); }), "invalid") << bad;
    }
    EXPECT_EQ(errorOf([] { (void)splitStyle(repeated("a:b;", limits::listItems + 1)); }), "other");
}

TEST(Style, LetsTheLastOfANameCount) {
    const auto pairs = splitStyle("r:1;r:2");
    EXPECT_EQ(AttributeParser(noOptions, {}, pairs).parse("r", ValueParser::parseFloat), 2);
}

}  // namespace
}  // namespace sorvik::draw::testing
