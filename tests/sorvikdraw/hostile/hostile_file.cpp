#include "hostile_file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "png_pixels.h"
#include "program_run.h"

namespace sorvik::draw::test {

namespace fs = std::filesystem;

namespace {

constexpr double mostSeconds = 5;
constexpr double mostSecondsOfDrawing = 3;
constexpr long mostKilobytes = 512 * 1024;
constexpr std::uint64_t mostPixelsLookedAt = 16'000'000;
constexpr Pixel lime{0, 255, 0, 255};

/// Pictures are drawn in bands, one for each processor, at the same time.
double mostProcessorSeconds(std::string_view format) {
    const unsigned others = std::max(std::thread::hardware_concurrency(), 1U) - 1;
    return format == "png" ? mostSeconds + mostSecondsOfDrawing * others : mostSeconds;
}

bool isClearLine(std::string_view line) {
    return line.size() > 8 && line.size() < 400 &&
           std::all_of(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) >= ' '; });
}

/// The line about the document, and that of the tool about its end.
void expectComplaint(std::string_view error, std::string_view complaint) {
    EXPECT_NE(error.find(complaint), std::string_view::npos) << error.substr(0, 2000);
    int lines = 0;
    while (!error.empty()) {
        const std::size_t end = std::min(error.find('\n'), error.size() - 1);
        EXPECT_TRUE(isClearLine(error.substr(0, end))) << error.substr(0, 2000);
        error.remove_prefix(end + 1);
        ++lines;
    }
    EXPECT_TRUE(lines == 1 || lines == 2) << lines << " lines";
}

void expectPicture(const fs::path& picture, bool marked) {
    const std::optional<Pixels> size = readPngSize(picture);
    ASSERT_TRUE(size);
    if (std::uint64_t{size->width} * size->height > mostPixelsLookedAt) {
        return;
    }
    const std::optional<Pixels> pixels = readPng(picture);
    ASSERT_TRUE(pixels);
    if (marked) {
        EXPECT_EQ(pixels->at(size->width * 95 / 100, size->height * 95 / 100), lime) << "the end is not drawn";
    }
}

void expectPage(const fs::path& page) {
    const std::string contents = contentsOf(page);
    EXPECT_TRUE(contents.starts_with("%PDF-"));
    EXPECT_NE(contents.rfind("%%EOF"), std::string::npos);
}

bool mayEnd(End end, std::string_view format, bool drawn) {
    switch (end) {
        case End::drawn:
            return drawn;
        case End::drawnAsPicture:
            return drawn || format == "pdf";
        case End::refused:
            return !drawn;
        case End::noPicture:
            return !drawn || format == "pdf";
        case End::either:
            return true;
    }
    return false;
}

/// "Uses-OfItself.svg"
fs::path place(const Folder& folder, const std::string& extension) {
    const char* keep = std::getenv("SORVIK_KEEP_PICTURES");
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string suite = test.test_suite_name();
    const std::string name = test.name();
    const std::string file = suite.substr(0, suite.find('/')) + "-" + name.substr(name.find('/') + 1) + "." + extension;
    return keep == nullptr ? folder / file : fs::path(keep) / file;
}

void expectEnd(const HostileFile& file, const std::string& format) {
    const Folder folder;
    const fs::path input = place(folder, "svg");
    const fs::path output = place(folder, format);
    writeFile(input, file.contents());
    std::vector<std::string> arguments{input, "--format", format, "--output", output};
    if (!file.size.empty()) {
        arguments.insert(arguments.end(), {"--size", std::string(file.size)});
    }
    const ProgramRun run = runProgram(drawingTool(), arguments);

    EXPECT_LT(run.processorSeconds, mostProcessorSeconds(format));
    EXPECT_LT(run.peakKilobytes, mostKilobytes);
    EXPECT_TRUE(mayEnd(file.end, format, run.status == 0))
        << "status " << run.status << " " << run.error.substr(0, 2000);
    if (run.status == 0 && format == "png") {
        expectPicture(output, file.marked);
    } else if (run.status == 0) {
        expectPage(output);
    } else {
        EXPECT_LT(run.status, 64) << "a signal, or stopped";
        EXPECT_FALSE(fs::exists(output));
        expectComplaint(run.error, file.complaint);
    }
}

}  // namespace

std::string documentWith(std::string_view rootAttributes, std::string_view body) {
    std::string text = R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )";
    text.reserve(text.size() + rootAttributes.size() + body.size() + marker.size() + 16);
    text.append(rootAttributes).append(">").append(body).append(marker).append("</svg>");
    return text;
}

std::string document(std::string_view body) { return documentWith(R"(width="100" height="100")", body); }

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

TEST_P(HostileFiles, EndAsPNG) { expectEnd(GetParam(), "png"); }

TEST_P(HostileFiles, EndAsPDF) { expectEnd(GetParam(), "pdf"); }

}  // namespace sorvik::draw::test
