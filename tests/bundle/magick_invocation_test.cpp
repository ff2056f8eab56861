#include "bundle/magick/magick_invocation.h"

#include <gtest/gtest.h>

namespace sorvik::bundle {
namespace {

TEST(MagickInvocation, GoesToTheProgramOfThePreviousVersionWithTheSameVector) {
    struct Case {
        std::vector<std::string> arguments;
        MagickInvocation expected;
    };
    const std::vector<Case> cases = {
        {{}, {"/usr/bin/convert", {"/usr/bin/convert"}}},
        {{"a b.png", "-quality", "85", "-n\xff.webp"},
         {"/usr/bin/convert", {"/usr/bin/convert", "a b.png", "-quality", "85", "-n\xff.webp"}}},
        {{"identify", "-verbose", "x.jpg"}, {"/usr/bin/identify", {"/usr/bin/identify", "-verbose", "x.jpg"}}},
        {{"identify"}, {"/usr/bin/identify", {"/usr/bin/identify"}}},
        {{"identify", "identify"}, {"/usr/bin/identify", {"/usr/bin/identify", "identify"}}},
        {{"in.png", "identify"}, {"/usr/bin/convert", {"/usr/bin/convert", "in.png", "identify"}}},
        {{"i", "-define", "png:exclude-chunk=tIME", "-define", "x=y", "-define", "png:exclude-chunk=tEXt", "o"},
         {"/usr/bin/convert",
          {"/usr/bin/convert", "i", "-define", "png:exclude-chunk=tIME,tEXt", "-define", "x=y", "o"}}},
        {{"identify.png", ""}, {"/usr/bin/convert", {"/usr/bin/convert", "identify.png", ""}}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(magickInvocation(c.arguments), c.expected) << ::testing::PrintToString(c.arguments);
    }
}

TEST(ExecuteDeathTest, HandsOverArgumentsAndStatus) {
    EXPECT_EXIT(execute({"/bin/sh", {"sh", "-c", "exit $(($# + 40))", "x", "", "a b"}}), ::testing::ExitedWithCode(42),
                "");
}

TEST(ExecuteDeathTest, SaysWhatCanNotBeStarted) {
    EXPECT_EXIT(execute({"/nowhere/convert", {"convert"}}), ::testing::ExitedWithCode(127),
                "magick: /nowhere/convert can't be started: No such file or directory");
    EXPECT_EXIT(execute({"/etc/passwd", {"convert"}}), ::testing::ExitedWithCode(126),
                "magick: /etc/passwd can't be started: Permission denied");
}

}  // namespace
}  // namespace sorvik::bundle
