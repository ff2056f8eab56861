// A configuration becomes bytes, or one of the errors that callers tell apart.

#include "sorvikdraw/tool/process_image.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "program_run.h"
#include "sorvikdraw/tool/error.h"

namespace sorvik::draw::command_line {
namespace {

constexpr std::string_view tenByTwenty =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="20"><rect width="5" height="20" fill="red"/></svg>)";

class ProcessImage : public testing::Test {
protected:
    ProcessImage() { test::writeFile(folder_ / "in.svg", tenByTwenty); }

    [[nodiscard]] Configuration configuration(Format format) const {
        Configuration result;
        result.input = folder_ / "in.svg";
        result.format = format;
        return result;
    }
    [[nodiscard]] static std::string made(const Configuration& configuration) {
        const auto bytes = processImage(configuration);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
    [[nodiscard]] static std::optional<Error::Kind> errorOf(const Configuration& configuration) {
        try {
            (void)processImage(configuration);
        } catch (const Error& error) {
            return error.kind();
        }
        return std::nullopt;
    }

    test::Folder folder_;
};

/// Width and height as a PNG's header tells them.
std::pair<int, int> sideLengths(std::string_view png) {
    const auto number = [&](std::size_t at) {
        return static_cast<unsigned char>(png.at(at + 2)) * 256 + static_cast<unsigned char>(png.at(at + 3));
    };
    return {number(16), number(20)};
}

TEST_F(ProcessImage, MakesEachFormat) {
    EXPECT_TRUE(made(configuration(Format::png)).starts_with("\x89PNG"));
    EXPECT_TRUE(made(configuration(Format::jpeg)).starts_with("\xFF\xD8\xFF"));
    EXPECT_TRUE(made(configuration(Format::pdf)).starts_with("%PDF-"));
}

TEST_F(ProcessImage, SizesThenGrowsThenScales) {
    Configuration png = configuration(Format::png);
    EXPECT_EQ(sideLengths(made(png)), std::pair(10, 20));
    png.scale = Scale::superRetina;
    EXPECT_EQ(sideLengths(made(png)), std::pair(30, 60));
    png.size = Size{7, 5};
    png.insets = {1, 2, 3, 4};
    EXPECT_EQ(sideLengths(made(png)), std::pair((7 + 2 + 4) * 3, (5 + 1 + 3) * 3));

    Configuration pdf = configuration(Format::pdf);
    pdf.scale = Scale::superRetina;
    EXPECT_NE(made(pdf).find("[ 0 0 10 20 ]"), std::string::npos) << "a page knows no scale";
    pdf.insets = {1, 2, 3, 4};
    EXPECT_NE(made(pdf).find("[ 0 0 16 24 ]"), std::string::npos);
}

TEST_F(ProcessImage, TellsItsErrorsApart) {
    Configuration mixed = configuration(Format::png);
    mixed.insets = {1, std::nullopt, 3, 4};
    for (const Format format : {Format::png, Format::jpeg, Format::pdf}) {
        mixed.format = format;
        EXPECT_EQ(errorOf(mixed), Error::Kind::unsupported);
    }
    EXPECT_EQ(errorOf(configuration(Format::swift)), Error::Kind::unsupported);
    EXPECT_EQ(errorOf(configuration(Format::sfsymbol)), Error::Kind::unsupported);

    Configuration missing = configuration(Format::swift);
    missing.input = folder_ / "none.svg";
    EXPECT_EQ(errorOf(missing), Error::Kind::fileNotFound);
    Configuration noFile = configuration(Format::png);
    noFile.input = folder_ / ".";
    EXPECT_EQ(errorOf(noFile), Error::Kind::invalid);

    Configuration broken = configuration(Format::png);
    broken.input = folder_ / "broken.svg";
    test::writeFile(broken.input, "<svg width='1' height='1'>");
    EXPECT_EQ(errorOf(broken), Error::Kind::invalid);
}

TEST(MakeImageInsets, AreAllOrNone) {
    EXPECT_EQ(makeImageInsets({}), SVG::Insets());
    EXPECT_EQ(makeImageInsets({1, 2, 3, 4}), (SVG::Insets{1, 2, 3, 4}));
    EXPECT_THROW((void)makeImageInsets({std::nullopt, 2, 3, 4}), Error);
    EXPECT_THROW((void)makeImageInsets({1, 2, 3, std::nullopt}), Error);
}

TEST(MakeSVGOptions, AreTheConfigured) {
    Configuration configuration;
    EXPECT_EQ(makeSVGOptions(configuration), SVG::defaultOptions);
    configuration.options = SVG::hideUnsupportedFilters;
    EXPECT_EQ(makeSVGOptions(configuration), SVG::hideUnsupportedFilters);
}

}  // namespace
}  // namespace sorvik::draw::command_line
