#include "imaging/sips/arguments.h"

#include <gtest/gtest.h>

#include "imaging/sips/failure.h"

namespace sorvik::sips {
namespace {

using Words = std::vector<std::string_view>;

Status refusalOf(const Words& words) {
    try {
        static_cast<void>(parseArguments(words));
        return Status::finished;
    } catch (const Failure& failure) {
        return failure.status();
    }
}

TEST(Arguments, AllSettingsReachTheRequest) {
    const Words words{"-s",      "format",       "png",       "-s",         "optimize", "9",     "-s",
                      "purpose", "intermediate", "-s",        "colorSpace", "sRGB",     "-s",    "stripMetadata",
                      "yes",     "-s",           "iconSizes", "16,256",     "in",       "--out", "out"};
    const auto request = std::get<ConvertRequest>(parseArguments(words));
    EXPECT_EQ(request.format, Format::png);
    EXPECT_EQ(request.level, 9);
    EXPECT_FALSE(request.quality);
    EXPECT_TRUE(request.intermediate && request.toSrgb && request.stripMetadata);
    EXPECT_EQ(request.iconSizes, (std::vector<int>{16, 256}));
    EXPECT_EQ(request.input, "in");
    EXPECT_EQ(request.output, "out");
}

TEST(Arguments, PathsAreTakenAsTheyAre) {
    const auto request =
        std::get<ConvertRequest>(parseArguments(Words{"-s", "format", "jpeg", "-x[1]\n", "--out", "--out"}));
    EXPECT_EQ(request.input, "-x[1]\n");
    EXPECT_EQ(request.output, "--out");
    const auto carry = std::get<CarryRequest>(parseArguments(Words{"--carry-metadata", "-a", "-b"}));
    EXPECT_EQ(carry.from, "-a");
    EXPECT_EQ(carry.to, "-b");
}

TEST(Arguments, WhatMakesNoSenseIsRefused) {
    const std::vector<Words> senseless{
        {},
        {"in", "--out", "out"},
        {"-s", "format", "png", "in"},
        {"-s", "format", "png", "in", "--out", ""},
        {"-s", "format", "png", "in", "--out", "out", "more"},
        {"-s", "format", "png", "-s", "optimize", "10", "in", "--out", "out"},
        {"-s", "format", "jpeg", "-s", "formatOptions", "101", "in", "--out", "out"},
        {"-s", "format", "jpeg", "-s", "formatOptions", "80%", "in", "--out", "out"},
        {"-s", "format", "jpeg", "-s", "purpose", "intermediate", "in", "--out", "out"},
        {"-s", "format", "jpeg", "-s", "iconSizes", "16", "in", "--out", "out"},
        {"-s", "format", "png", "-s", "iconSizes", "16,", "in", "--out", "out"},
        {"-s", "format", "png", "-s", "iconSizes", "0", "in", "--out", "out"},
        {"-s", "format", "png", "-s", "colour", "red", "in", "--out", "out"},
        {"--carry-metadata", "from"},
    };
    for (const Words& words : senseless) {
        EXPECT_EQ(refusalOf(words), Status::badUsage) << testing::PrintToString(words);
    }
    for (const std::string_view format : {"svg", "ico", "avif", "eps", "ai", "PNG", ""}) {
        EXPECT_EQ(refusalOf({"-s", "format", format, "in", "--out", "out"}), Status::failed) << format;
    }
}

}  // namespace
}  // namespace sorvik::sips
