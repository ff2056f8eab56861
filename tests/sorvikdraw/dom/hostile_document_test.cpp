#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "dom_testing.h"
#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/svg.h"

namespace sorvik::draw::dom {
namespace {

using draw::testing::errorOf;
using draw::testing::repeated;
using ::testing::HasSubstr;

const std::string opening = "<svg width='10' height='10' id='a'>";

std::string document(const std::string& content) { return opening + content + "</svg>"; }

TEST(HostileDocument, OfDeepContainersIsRead) {
    for (const std::string name : {"g", "switch", "a"}) {
        const std::size_t depth = limits::nesting - 1;
        const SVG svg =
            SVG::parseXML(document(repeated("<" + name + " id='x'>", depth) + repeated("</" + name + ">", depth)));
        EXPECT_EQ(svg.elements.size(), depth);
        EXPECT_EQ(svg.firstGraphicsElement("none"), nullptr);
    }
}

TEST(HostileDocument, OfAMillionElementsIsRead) {
    EXPECT_EQ(SVG::parseXML(document(repeated("<g/>", limits::elements - 1))).children.size(), limits::elements - 1);
}

// Every level reads what all the levels inside have: linear for elements, and for definitions within a budget.
TEST(HostileDocument, OfDrawingsInsideEachOtherCostsWhatItHolds) {
    const std::size_t depth = limits::nesting - 2;
    const std::string closing = repeated("</svg>", depth);
    const SVG svg = SVG::parseXML(repeated(opening, depth) + repeated("<g/>", 100'000) + closing);
    EXPECT_EQ(svg.elements.size(), 100'000 + depth - 1);
    for (const std::string many : {"<linearGradient id='a'/>", "<defs/>", "<style/>", "<filter id='a'><x/></filter>"}) {
        const auto error = errorOf(
            [&] { static_cast<void>(SVG::parseXML(repeated(opening, depth) + repeated(many, 50'000) + closing)); });
        EXPECT_THAT(error.what(), HasSubstr("too large")) << many;
    }
}

TEST(HostileDocument, OfFaultyStyleSheetsIsRefusedBeforeItFloodsTheLog) {
    const std::string faulty = "<style>a</style>";
    ::testing::internal::CaptureStderr();
    const auto error =
        errorOf([&] { static_cast<void>(SVG::parseXML(document(repeated(faulty, limits::faultyStyleSheets + 1)))); });
    const std::string lines = ::testing::internal::GetCapturedStderr();
    EXPECT_THAT(error.what(), HasSubstr("faulty style sheets"));
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(lines, '\n')), limits::faultyStyleSheets);
}

// A drawing among definitions is read by the "svg" that defines it and again by the one between.
TEST(HostileDocument, WhereEveryLevelDoublesTheWorkIsRefused) {
    const std::size_t levels = 300;
    const auto error = errorOf([&] {
        static_cast<void>(SVG::parseXML(
            document(repeated(opening + opening + "<defs>", levels) + repeated("</defs></svg></svg>", levels))));
    });
    EXPECT_THAT(error.what(), HasSubstr("too large"));
}

TEST(HostileDocument, OfLongPathsIsRefused) {
    const std::string path = "<path d='" + repeated("M0 0", 200'000) + "'/>";
    EXPECT_EQ(SVG::parseXML(document(path)).elements.size(), 1U);
    const auto error = errorOf([&] { static_cast<void>(SVG::parseXML(document(repeated(path, 50)))); });
    EXPECT_THAT(error.what(), HasSubstr("too large"));
}

}  // namespace
}  // namespace sorvik::draw::dom
