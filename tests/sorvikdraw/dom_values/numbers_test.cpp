#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/scanner.h"
#include "sorvikdraw/dom/value_parser.h"
#include "test_attributes.h"

namespace sorvik::draw::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

template <typename Value>
struct Case {
    std::string_view text;
    std::optional<Value> value;
};

template <typename Value>
void expectEach(std::optional<Value> (*parse)(std::string_view), std::initializer_list<Case<Value>> cases) {
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(parse(text), value) << '"' << text << '"';
    }
}

TEST(Numbers, AreDecimalAndFinite) {
    expectEach<float>(ValueParser::parseFloat, {{"1", 1.0F},      {" \t\n\r-1.5e2 rest", -150.0F},
                                                {"+2", 2.0F},     {".5", 0.5F},
                                                {"5.", 5.0F},     {"-.5E+1", -5.0F},
                                                {"1em", 1.0F},    {"0x10", 0.0F},
                                                {"1e-999", 0.0F}, {"1e-60", 0.0F},
                                                {"", {}},         {"  ", {}},
                                                {"+", {}},        {"+-1", {}},
                                                {"--1", {}},      {".", {}},
                                                {"e5", {}},       {"nan", {}},
                                                {"inf", {}},      {"-infinity", {}},
                                                {",1", {}},       {"1e999", {}},
                                                {"-1e39", {}}});
}

TEST(Numbers, CoordinatesTakeUnits) {
    expectEach<float>(ValueParser::parseCoordinate, {{"1px", 1.0F},
                                                     {"1in", 96.0F},
                                                     {"1cm", 37.795F},
                                                     {"10mm", 37.795F},
                                                     {"1pt", 1.3333F},
                                                     {"1pc", 16.0F},
                                                     {"2 in", 192.0F},
                                                     {"2em", 2.0F},
                                                     {"50%", 50.0F},
                                                     {"1IN", 1.0F},
                                                     {"px", {}},
                                                     {"3e38in", {}}});
}

TEST(Numbers, PercentagesAreRatios) {
    expectEach<float>(ValueParser::parsePercentage, {{"50%", 0.5F},
                                                     {"50 %", 0.5F},
                                                     {"0.5", 0.5F},
                                                     {"0.5em", 0.5F},
                                                     {"5e1%", 0.5F},
                                                     {"100%", 1.0F},
                                                     {"1", 1.0F},
                                                     {"0", 0.0F},
                                                     {"0%", 0.0F},
                                                     {"-0", 0.0F},
                                                     {"50", {}},
                                                     {"1.1", {}},
                                                     {"-1", {}},
                                                     {"101%", {}},
                                                     {"-1%", {}},
                                                     {"", {}},
                                                     {"%", {}}});
}

TEST(Numbers, LengthsAndBooleans) {
    expectEach<std::int32_t>(ValueParser::parseLength,
                             {{" 12 ", 12}, {"3.7", 3}, {"-1", {}}, {"2147483648", {}}, {"", {}}, {"x", {}}});
    expectEach<bool>(ValueParser::parseBool, {{"true", true},
                                              {"TRUE", true},
                                              {"1", true},
                                              {"10", true},
                                              {"false", false},
                                              {"FALSE", false},
                                              {"0", false},
                                              {"True", {}},
                                              {"2", {}},
                                              {"", {}}});
}

TEST(Numbers, ListsOfFloats) {
    EXPECT_THAT(ValueParser::parseFloats(" 1,2 3  ,4 "), Optional(ElementsAre(1, 2, 3, 4)));
    EXPECT_THAT(ValueParser::parseFloats("1-2.5.5"), Optional(ElementsAre(1, -2.5, 0.5)));
    EXPECT_THAT(ValueParser::parseFloats(" \n "), Optional(IsEmpty()));
    for (const auto* const bad : {"1,,2", ",1", "1;2", "1 x", "1 1e999"}) {
        EXPECT_EQ(ValueParser::parseFloats(bad), std::nullopt) << bad;
    }
}

TEST(Numbers, ListsOfPoints) {
    using dom::Point;
    const auto points = ::testing::Optional(ElementsAre(Point{1, 2}, Point{3, 96}));
    for (const auto* const text : {"1,2 3,1in", "1 2 3 1in", "1;2;3;1in;", " 1,2,3px,1in, "}) {
        EXPECT_THAT(ValueParser::parsePoints(text), points) << text;
    }
    EXPECT_THAT(ValueParser::parsePoints(""), Optional(IsEmpty()));
    for (const auto* const bad : {"1", "1,2,3", "1,,2", "1,2 x,y", ",1,2"}) {
        EXPECT_EQ(ValueParser::parsePoints(bad), std::nullopt) << bad;
    }
}

TEST(Numbers, ListsAreBounded) {
    EXPECT_EQ(ValueParser::parseFloats(repeated("1 ", limits::listItems))->size(), limits::listItems);
    EXPECT_EQ(errorOf([] { (void)ValueParser::parseFloats(repeated("1 ", limits::listItems + 1)); }), "other");
    EXPECT_EQ(errorOf([] { (void)ValueParser::parsePoints(repeated("1 1 ", limits::pathSegments + 1)); }), "other");
}

TEST(Scanner, StaysWhereItWasWhenAScanFails) {
    Scanner scanner("  abc");
    EXPECT_FALSE(scanner.scanString("abd"));
    EXPECT_FALSE(scanner.scanCharacter("b"));
    EXPECT_FALSE(scanner.scanCharacters("xyz"));
    EXPECT_FALSE(scanner.scanUpTo("a"));
    EXPECT_FALSE(scanner.scanDouble());
    EXPECT_FALSE(scanner.scanPercentage());
    EXPECT_FALSE(scanner.scanBool());
    EXPECT_EQ(scanner.currentIndex(), 0U);

    Scanner halfWay(" 50 x 300 1e39 2e38in");
    EXPECT_FALSE(halfWay.scanPercentage());
    EXPECT_FALSE(halfWay.scanPercentageFloat());
    EXPECT_EQ(halfWay.currentIndex(), 0U);
    EXPECT_EQ(halfWay.scanUpTo("x"), "50 ");
    EXPECT_TRUE(halfWay.scanString("x"));
    EXPECT_FALSE(halfWay.scanUInt8());
    EXPECT_EQ(halfWay.scanUpTo("1"), "300 ");
    const auto place = halfWay.currentIndex();
    EXPECT_FALSE(halfWay.scanFloat());
    EXPECT_EQ(halfWay.currentIndex(), place);
    EXPECT_TRUE(halfWay.scanDouble());
    EXPECT_FALSE(halfWay.scanCoordinate());
    EXPECT_EQ(halfWay.scanUpTo("i"), "2e38");
}

TEST(Scanner, EndsBehindTheLastCharacterThatIsNoBlank) {
    Scanner scanner(" a \n");
    EXPECT_FALSE(scanner.isEOF());
    EXPECT_EQ(scanner.scanUpTo(";"), "a \n");
    EXPECT_TRUE(scanner.isEOF());
    EXPECT_FALSE(scanner.scanUpTo(";"));
    EXPECT_FALSE(scanner.scanString("a"));
    EXPECT_TRUE(Scanner(" \t\r\n").isEOF());
}

}  // namespace
}  // namespace sorvik::draw::testing
