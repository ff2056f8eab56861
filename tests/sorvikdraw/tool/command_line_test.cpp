// Arguments become a configuration, or a sentence about what is wrong with them.

#include "sorvikdraw/tool/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sorvikdraw/tool/error.h"
#include "sorvikdraw/tool/help_text.h"
#include "sorvikdraw/tool/modifier.h"

namespace sorvik::draw::command_line {
namespace {

using Words = std::vector<std::string_view>;

Configuration parse(const Words& words) { return parseConfiguration(words, "/base/folder"); }

Configuration parsePNG(Words options) {
    options.insert(options.begin(), {"sorvikdraw", "in.svg", "--format", "png"});
    return parse(options);
}

/// The sentence of the failure; empty when there was none.
std::string failureOf(const Words& words) {
    try {
        (void)parse(words);
    } catch (const Error& error) {
        EXPECT_EQ(error.kind(), Error::Kind::invalid);
        return error.what();
    }
    return "";
}

std::string failureOfPNG(Words options) {
    options.insert(options.begin(), {"sorvikdraw", "in.svg", "--format", "png"});
    return failureOf(options);
}

TEST(ParseConfiguration, TakesEveryModifierWithItsValue) {
    const Configuration plain = parsePNG({});
    Configuration expected;
    expected.input = "/base/folder/in.svg";
    expected.output = "/base/folder/in.png";
    expected.insetsUltralight = expected.insetsBlack = Insets();
    EXPECT_EQ(plain, expected);

    expected.output = "/base/out.png";
    expected.size = Size{640, 480};
    expected.insets = Insets{1, -2.5, 0, 1e3};
    expected.scale = Scale::superRetina;
    expected.precision = 4;
    expected.api = API::uikit;
    expected.inputUltralight = "/light.svg";
    expected.insetsUltralight = Insets{1, std::nullopt, 3, 4};
    expected.inputBlack = "/base/folder/black.svg";
    expected.insetsBlack = Insets{5, 6, 7, 8};
    expected.options = SVG::hideUnsupportedFilters;
    expected.isLegacyInsetsEnabled = true;
    EXPECT_EQ(parsePNG({"--legacy",
                        "--output",
                        "./../out.png",
                        "--size",
                        "640x480",
                        "--insets",
                        "1,-2.5,0,1e3",
                        "--scale",
                        "3x",
                        "--precision",
                        "4",
                        "--api",
                        "uikit",
                        "--ultralight",
                        "/x/../light.svg",
                        "--ultralightInsets",
                        "1,auto,3,4",
                        "--black",
                        "black.svg",
                        "--black-insets",
                        "5,6,7,8",
                        "--hide-unsupported-filters"}),
              expected);
}

TEST(ParseConfiguration, AsksForAnInputAndAFormat) {
    EXPECT_NE(failureOf({}), "");
    EXPECT_NE(failureOf({"sorvikdraw"}), "");
    EXPECT_NE(failureOf({"sorvikdraw", "in.svg"}).find("--format"), std::string::npos);
    EXPECT_NE(failureOf({"sorvikdraw", "in.svg", "--scale", "1x"}).find("--format"), std::string::npos);
    EXPECT_EQ(failureOf({"sorvikdraw", "in.svg", "--format", "svg"}),
              "--format svg: expected jpeg, pdf, png, swift or sfsymbol");
    EXPECT_NE(failureOf({"sorvikdraw", "in.svg", "--format", "PNG"}), "") << "values keep their case";
}

TEST(ParseConfiguration, RefusesWhatNamesNoModifierAndWhatIsGivenTwice) {
    for (const auto* word : {"png", "-format", "--Scale", "--", "---scale", "--scale=2x", ""}) {
        EXPECT_NE(failureOfPNG({word, "2x"}).find("no such option"), std::string::npos) << word;
    }
    EXPECT_NE(failureOfPNG({"--scale"}).find("needs a value"), std::string::npos);
    EXPECT_EQ(failureOfPNG({"--format", "jpeg"}), "--format: given twice");
    EXPECT_EQ(failureOfPNG({"--legacy", "--legacy"}), "--legacy: given twice");
    EXPECT_EQ(failureOfPNG({"--blackInsets", "auto", "--black-insets", "auto"}), "--black-insets: given twice");
    EXPECT_NE(failureOfPNG({"--legacy", "yes"}), "") << "takes no value";
    // What stands at a value's place is a value, whatever it looks like.
    EXPECT_EQ(parsePNG({"--output", "--legacy"}).output, "/base/folder/--legacy");
}

TEST(ParseConfiguration, ReadsNumbersWholeAndInRange) {
    for (const auto* size : {"1x1", "2147483647x2147483647", "+3x4", " 3 x 4 "}) {
        EXPECT_EQ(failureOfPNG({"--size", size}), "") << size;
    }
    for (const auto* size : {"", "10", "0x10", "10x0", "-1x1", "x", "10x", "x10", "10X10", "10x10x", "1.5x2",
                             "2147483648x1", "99999999999999999999x1", "small", "10,10", "+-1x1", "0x10x10"}) {
        EXPECT_NE(failureOfPNG({"--size", size}), "") << size;
    }
    for (const auto* precision : {"0", "-1", "+7", "9223372036854775807"}) {
        EXPECT_EQ(failureOfPNG({"--precision", precision}), "") << precision;
    }
    for (const auto* precision : {"", "two", "1.5", "0x1", "9223372036854775808", "1 2"}) {
        EXPECT_NE(failureOfPNG({"--precision", precision}), "") << precision;
    }
    for (const auto* scale : {"", "1", "4x", "2X", "2.0", "default"}) {
        EXPECT_NE(failureOfPNG({"--scale", scale}), "") << scale;
    }
    EXPECT_NE(failureOfPNG({"--api", "AppKit"}), "");
}

TEST(ParseConfiguration, KeepsTheWordsOfSymbolSizesToSymbols) {
    const Configuration symbol = parse({"sorvikdraw", "in.svg", "--format", "sfsymbol", "--size", "medium"});
    EXPECT_EQ(symbol.symbolSize, sf_symbol_renderer::SizeCategory::medium);
    EXPECT_EQ(symbol.size, std::nullopt);
    EXPECT_EQ(parse({"sorvikdraw", "in.svg", "--format", "sfsymbol"}).symbolSize, std::nullopt);
    EXPECT_EQ(failureOf({"sorvikdraw", "in.svg", "--format", "sfsymbol", "--size", "10x10"}),
              "--size 10x10: expected small, medium or large");
    EXPECT_EQ(parsePNG({"--size", "5x5"}).symbolSize, std::nullopt);
}

TEST(ParseInsets, AreFourNumbersOrAuto) {
    EXPECT_EQ(parseInsets(std::nullopt), Insets());
    EXPECT_EQ(parseInsets("auto"), Insets());
    EXPECT_EQ(parseInsets("auto,auto,auto,auto"), Insets());
    EXPECT_EQ(parseInsets("1, .5 ,auto,-2e1"), (Insets{1, 0.5, std::nullopt, -20}));
    for (const auto* value : {"", "1", "1,2,3", "1,2,3,", "1,2,3,4,5", "1,2,3,4,", ",1,2,3,4", "1;2;3;4", "1,2,x,4",
                              "inf,1,1,1", "nan,1,1,1", "1e999,1,1,1", "auto,auto", "Auto", "--1,1,1,1", "+,1,1,1"}) {
        EXPECT_THROW((void)parseInsets(value), Error) << value;
    }
}

TEST(MakeOutput, LiesBesideTheInputUnderItsName) {
    const struct {
        const char* input;
        Format format;
        Scale scale;
        const char* output;
    } rows[] = {
        {"/a/in.svg", Format::jpeg, Scale::retina, "/a/in.jpg"},
        {"/a/in.svg", Format::pdf, Scale::superRetina, "/a/in.pdf"},
        {"/a/in.svg", Format::png, Scale::normal, "/a/in.png"},
        {"/a/in.svg", Format::png, Scale::retina, "/a/in@2x.png"},
        {"/a/in.svg", Format::png, Scale::superRetina, "/a/in@3x.png"},
        {"/a/in.svg", Format::swift, Scale::retina, "/a/in.swift"},
        {"/a/in.svg", Format::sfsymbol, Scale::retina, "/a/in-symbol.svg"},
        {"/a.b/in", Format::png, Scale::normal, "/a.b/in.png"},
        {"/a/in.tar.svg", Format::png, Scale::normal, "/a/in.tar.png"},
        {"/a/.svg", Format::png, Scale::normal, "/a/.svg.png"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(makeOutput(row.input, row.format, row.scale), row.output) << row.input;
    }
    // A folder's slash is no name, and a way back stays inside the root.
    EXPECT_EQ(parse({"", "x/../in.svg/", "--format", "png"}).output, "/base/folder/in.png");
    EXPECT_EQ(parse({"", "../../../../in.svg", "--format", "png"}).input, "/in.svg");
}

TEST(AsksForHelp, OnlyWhereAnInputOrAnOptionIsRead) {
    const auto asks = [](const Words& words) { return asksForHelp(words); };
    EXPECT_TRUE(asks({"sorvikdraw", "--help"}));
    EXPECT_TRUE(asks({"sorvikdraw", "in.svg", "--help"}));
    EXPECT_TRUE(asks({"sorvikdraw", "in.svg", "--legacy", "--format", "png", "--help", "x"}));
    EXPECT_FALSE(asks({"sorvikdraw", "in.svg", "--output", "--help"}));
    EXPECT_FALSE(asks({"sorvikdraw", "in.svg", "x", "--help"})) << "what comes first is wrong";
    EXPECT_FALSE(asks({"sorvikdraw"}));
    EXPECT_FALSE(asks({}));
}

TEST(HelpText, NamesEveryOptionAndFormat) {
    const std::string text = helpText();
    for (const ModifierRow& row : modifiers) {
        EXPECT_NE(text.find("  --" + std::string(row.name)), std::string::npos) << row.name;
    }
    for (const FormatRow& row : formats) {
        EXPECT_NE(text.find("\n  " + std::string(row.text)), std::string::npos) << row.text;
    }
}

}  // namespace
}  // namespace sorvik::draw::command_line
