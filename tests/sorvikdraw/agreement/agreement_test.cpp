// Each drawing of the folder is drawn by the real tool and by rsvg-convert, 300 pixels wide, and both must look alike.
//
// With SORVIK_KEEP_PICTURES=/some/folder both pictures of every drawing stay there, as NAME.here.png and
// NAME.there.png. Drawings named hidden-* are drawn with elements that have a filter left out.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "departures.h"
#include "likeness.h"
#include "program_run.h"

namespace sorvik::draw::test {
namespace {

namespace fs = std::filesystem;

constexpr int width = 300;

std::vector<std::string> drawings() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(SORVIK_AGREEMENT_PICTURES)) {
        if (entry.path().extension() == ".svg") {
            names.push_back(entry.path().stem());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Agreement : public testing::TestWithParam<std::string> {
protected:
    [[nodiscard]] fs::path drawing() const { return fs::path(SORVIK_AGREEMENT_PICTURES) / (GetParam() + ".svg"); }

    /// The other program's picture; its height follows from the drawing.
    std::optional<Pixels> drawThere() {
        const fs::path picture = place("there");
        const ProgramRun run =
            runProgram("rsvg-convert", {"-w", std::to_string(width), "-o", picture.string(), drawing().string()});
        EXPECT_EQ(run.status, 0) << run.error;
        EXPECT_EQ(run.error, "") << "the drawing itself is at fault";
        return readPng(picture);
    }

    std::optional<Pixels> drawHere(std::uint32_t height) {
        const fs::path picture = place("here");
        std::vector<std::string> arguments{drawing().string(),
                                           "--format",
                                           "png",
                                           "--output",
                                           picture.string(),
                                           "--size",
                                           std::to_string(width) + "x" + std::to_string(height)};
        if (GetParam().starts_with("hidden-")) {
            arguments.emplace_back("--hideUnsupportedFilters");
        }
        const ProgramRun run = runProgram(drawingTool(), arguments);
        EXPECT_EQ(run.status, 0) << run.error;
        return readPng(picture);
    }

private:
    [[nodiscard]] fs::path place(const std::string& side) const {
        const char* keep = std::getenv("SORVIK_KEEP_PICTURES");
        const std::string name = GetParam() + "." + side + ".png";
        return keep == nullptr ? folder_ / name : fs::path(keep) / name;
    }

    Folder folder_;
};

TEST_P(Agreement, BothPicturesAreAlike) {
    const std::optional<Pixels> there = drawThere();
    ASSERT_TRUE(there);
    const std::optional<Pixels> here = drawHere(there->height);
    ASSERT_TRUE(here);
    const Likeness likeness = compare(*here, *there);
    const std::optional<std::string_view> reason = departure(GetParam());
    EXPECT_EQ(likeness.agrees(), !reason)
        << likeness.figures() << (reason ? "\nnot expected, since " : "") << reason.value_or("");
}

INSTANTIATE_TEST_SUITE_P(Drawings, Agreement, testing::ValuesIn(drawings()), [](const auto& drawing) {
    std::string name = drawing.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }, '_');
    return name;
});

TEST(Departures, TheTableAndTheFolderNameTheSameDrawings) {
    std::vector<std::string> departing = drawings();
    std::erase_if(departing, [](const std::string& name) { return !name.starts_with("departs-"); });
    EXPECT_EQ(departing, departureNames());
}

TEST(Likenesses, FewPixelsMayDifferMuchAndSomeALittle) {
    const Pixels grey{100, 100, std::vector<std::uint8_t>(40'000, 128)};
    const auto changed = [&grey](std::size_t pixels, std::uint8_t to) {
        Pixels other = grey;
        for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
            other.bytes[pixel * 4 + 3] = to;
        }
        return compare(grey, other).agrees();
    };
    EXPECT_TRUE(changed(10'000, 130));
    EXPECT_TRUE(changed(100, 150));
    EXPECT_FALSE(changed(101, 150));
    EXPECT_TRUE(changed(10, 255));
    EXPECT_FALSE(changed(11, 255));
    EXPECT_FALSE(compare(grey, Pixels{200, 50, grey.bytes}).agrees());
}

}  // namespace
}  // namespace sorvik::draw::test
