#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "layers_testing.h"
#include "sorvikdraw/engine/svg.h"
#include "sorvikdraw/engine/svg_cache.h"

namespace sorvik::draw {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::lines;
using ::testing::StartsWith;

constexpr std::string_view redSquare =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="30" height="20"><rect width="2" height="2" fill="#f00"/></svg>)";
constexpr std::string_view blurred = R"-(<svg xmlns="http://www.w3.org/2000/svg" width="30" height="20"><defs>
  <filter id="f"><feGaussianBlur stdDeviation="2"/></filter></defs><rect width="2" height="2" filter="url(#f)"/></svg>)-";
constexpr std::string_view missingUse =
    R"-(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" width="30" height="20">
  <use xlink:href="#gone"/></svg>)-";

struct SVGLoad : ::testing::Test {
    SVGLoad() : folder(std::filesystem::path(::testing::TempDir()) / unique()) {
        std::filesystem::create_directories(folder);
    }
    ~SVGLoad() override { std::filesystem::remove_all(folder); }

    static std::string unique() {
        return std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + std::to_string(getpid());
    }
    std::filesystem::path write(const std::string& name, std::string_view text) const {
        std::ofstream(folder / name) << text;
        return folder / name;
    }
    static std::string errorsOf(const std::function<void()>& act) {
        ::testing::internal::CaptureStderr();
        act();
        return ::testing::internal::GetCapturedStderr();
    }

    std::filesystem::path folder;
};

TEST_F(SVGLoad, EveryWayGivesTheSameDrawing) {
    const auto fromFile = SVG::load(write("red.svg", redSquare));
    ASSERT_TRUE(fromFile);
    EXPECT_EQ(fromFile->size(), (SVG::Size{30, 20}));
    EXPECT_THAT(lines(fromFile->commands()),
                ElementsAre("setFill rgba 1 0 0 1", "fill M 0 0 L 2 0 L 2 2 L 0 2 Z nonzero"));
    EXPECT_EQ(SVG::loadXML(redSquare), fromFile);
    EXPECT_EQ(SVG::loadData(redSquare), fromFile);
    EXPECT_EQ(SVG::loadNamed("red.svg", folder), fromFile);
}

TEST_F(SVGLoad, FailuresAreOneLineWithTheFilesName) {
    const auto broken = write("broken.svg", "<svg");
    const auto bad = write("bad.svg", missingUse);
    EXPECT_THAT(errorsOf([&] { EXPECT_FALSE(SVG::load(broken)); }), StartsWith("[parsing error] broken.svg "));
    EXPECT_THAT(errorsOf([&] { EXPECT_FALSE(SVG::load(bad)); }),
                ::testing::AllOf(StartsWith("[parsing error] bad.svg "),
                                 ::testing::EndsWith("missing referenced element: #gone\n")));
    EXPECT_THAT(errorsOf([&] { EXPECT_FALSE(SVG::load(folder / "none.svg")); }),
                StartsWith("[parsing error] none.svg "));
    EXPECT_THAT(errorsOf([&] { EXPECT_FALSE(SVG::loadXML(missingUse)); }),
                ::testing::EndsWith("missing referenced element: #gone\n"));
    EXPECT_THAT(errorsOf([&] { EXPECT_FALSE(SVG::loadNamed("none", folder)); }),
                ::testing::HasSubstr("missing resource: none in bundle: "));
}

TEST_F(SVGLoad, OptionsHideWhatHasAFilter) {
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(SVG::loadXML(blurred, SVG::defaultOptions, SVG::Caller::tool)->commands().size(), 2U);
    EXPECT_THAT(::testing::internal::GetCapturedStdout(), ::testing::EndsWith("[--hideUnsupportedFilters]\n"));
    EXPECT_THAT(SVG::loadXML(blurred, SVG::hideUnsupportedFilters)->commands(), IsEmpty());
}

TEST_F(SVGLoad, FilesAreReadOnce) {
    const auto file = write("once.svg", redSquare);
    const auto first = SVG::load(file);
    write("once.svg", blurred);
    EXPECT_EQ(SVG::load(file), first);
    EXPECT_EQ(SVGGCache::shared().svg(file), first);
    EXPECT_NE(SVG::load(file, SVG::hideUnsupportedFilters), first);
}

}  // namespace
}  // namespace sorvik::draw
