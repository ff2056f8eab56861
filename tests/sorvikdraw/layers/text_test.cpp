#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <thread>

#include "layers_testing.h"
#include "sorvikdraw/engine/text_outlines.h"
#include "sorvikdraw/engine/text_placement.h"

namespace sorvik::draw::layer_tree {
namespace {

using namespace testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* sans = "DejaVu Sans";

struct Box {
    float left = std::numeric_limits<float>::max(), top = left, right = -left, bottom = -left;

    void include(Point point) {
        left = std::min(left, point.x);
        right = std::max(right, point.x);
        top = std::min(top, point.y);
        bottom = std::max(bottom, point.y);
    }
    [[nodiscard]] float width() const { return right - left; }
};

// Control points count as well; those of DejaVu stand where a curve turns.
Box boxOf(const Path& path) {
    Box box;
    const Overloaded include{
        [&](const PathSegment::Move& move) { box.include(move.to); },
        [&](const PathSegment::Line& line) { box.include(line.to); },
        [&](const PathSegment::Cubic& cubic) {
            box.include(cubic.control1);
            box.include(cubic.control2);
            box.include(cubic.to);
        },
        [](const PathSegment::Close&) {},
    };
    for (const PathSegment& segment : path.segments) {
        std::visit(include, segment.value);
    }
    return box;
}

// "H" in DejaVu Sans: 2048 units an em, the ink from 201 to 1339 and 0 to 1493, 1540 to the next letter.
TEST(TextOutline, HasTheSizeAsked) {
    for (const float size : {2048.0F, 20.48F, 0.02048F, 204800.0F}) {
        const float unit = size / 2048;
        const Box box = boxOf(textOutline("H", sans, size));
        EXPECT_NEAR(box.left, 201 * unit, unit);
        EXPECT_NEAR(box.right, 1339 * unit, unit);
        EXPECT_NEAR(box.top, -1493 * unit, unit);
        EXPECT_NEAR(box.bottom, 0, unit);
    }
}

TEST(TextOutline, SetsLetterAfterLetter) {
    EXPECT_NEAR(boxOf(textOutline("HH", sans, 2048)).right, 1540 + 1339, 2);
    EXPECT_LT(boxOf(textOutline("AV", sans, 2048)).width() + 50,
              boxOf(textOutline("A", sans, 2048)).width() + boxOf(textOutline("V", sans, 2048)).width())
        << "no kerning";
}

TEST(TextOutline, TakesWhatBreaksALineForABlank) {
    const Path blank = textOutline("H H", sans, 10);
    for (const char* text : {"H\nH", "H\tH", "H\rH", "H\x01H"}) {
        EXPECT_EQ(textOutline(text, sans, 10), blank);
    }
    EXPECT_LT(boxOf(blank).right, boxOf(textOutline("H  H", sans, 10)).right);
}

// Where the leftmost piece of ink ends and the rightmost one begins tells which letters stand at the ends.
TEST(TextOutline, ReadsEachScriptInItsDirection) {
    constexpr const char* lamed = "\u05dc";  // taller than the line
    constexpr const char* yod = "\u05d9";    // a speck
    const float whole = boxOf(textOutline(std::string(lamed) + yod, sans, 100)).width();
    const auto heightLeftOf = [](const Path& path, float x) {
        float top = 0;
        for (const PathSegment& segment : path.segments) {
            if (const auto* line = std::get_if<PathSegment::Line>(&segment.value); line != nullptr && line->to.x < x) {
                top = std::min(top, line->to.y);
            }
        }
        return -top;
    };
    const float height = heightLeftOf(textOutline(lamed, sans, 100), whole);
    EXPECT_LT(heightLeftOf(textOutline(std::string(lamed) + yod, sans, 100), whole / 4), height * 0.9F);
    EXPECT_EQ(heightLeftOf(textOutline(std::string(yod) + lamed, sans, 100), whole / 2), height);
    // Letters of another direction inside keep it.
    EXPECT_EQ(heightLeftOf(textOutline(std::string("i") + yod + lamed, sans, 100), 27 + whole / 2),
              std::max(height, heightLeftOf(textOutline("i", sans, 100), whole)));
}

TEST(TextOutline, ChoosesTheFirstFamilyThatIsThere) {
    const Path mono = textOutline("il", "DejaVu Sans Mono", 10);
    EXPECT_NE(mono, textOutline("il", sans, 10));
    EXPECT_EQ(mono, textOutline("il", "'DejaVu Sans Mono', serif", 10));
    EXPECT_EQ(mono, textOutline("il", " No Such Font ,\"DejaVu Sans Mono\"", 10));
    for (const char* family : {"", ",,,", "No Such Font", "H 12", "a\tb\n", "%s%n"}) {
        EXPECT_FALSE(textOutline("il", family, 10).segments.empty()) << family;
    }
    EXPECT_FALSE(textOutline("il", repeated("x,", 100'000), 10).segments.empty());
    EXPECT_FALSE(textOutline("il", std::string(1'000'000, 'x'), 10).segments.empty());
}

TEST(TextOutline, IsEmptyWhereNothingIsInked) {
    for (const char* text : {"", "   ", "\u00a0", "\u200b"}) {
        EXPECT_TRUE(textOutline(text, sans, 10).segments.empty()) << text;
    }
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float size : {0.0F, -5.0F, std::numeric_limits<float>::quiet_NaN(), infinity, 3e38F}) {
        EXPECT_TRUE(textOutline("H", sans, size).segments.empty()) << size;
    }
}

TEST(TextOutline, SurvivesStrangeText) {
    for (const char* text : {"\xff\xfe H", "\xf0\x9f\x98\x80", "a\u0300\u0301\u0302\u0303", "\u202eabc\u202c", "\ufffe",
                             "\xed\xa0\x80", "\u2028", "\U000e0041"}) {
        static_cast<void>(textOutline(text, sans, 10));
    }
    EXPECT_FALSE(textOutline("\xff\xfe H", sans, 10).segments.empty());
    static_cast<void>(textOutline(std::string("a\0b", 3), sans, 10));
}

TEST(TextOutline, IsLimited) {
    EXPECT_THROW(static_cast<void>(textOutline(std::string(100'001, 'i'), sans, 10)), LimitError);
    EXPECT_FALSE(textOutline(std::string(100'000, 'i'), sans, 10).segments.empty());
    EXPECT_THROW(static_cast<void>(textOutline(repeated("a\u05d0", 50'000), sans, 10)), LimitError) << "of points";
}

// What takes a time that grows with the square of a text's length, or worse, if it is left alone.
TEST(TextOutline, TakesNoLongerForHostileText) {
    const auto start = std::chrono::steady_clock::now();
    for (const char* piece : {"a\u05d0", "a\u03b1", "\u0301", "\u05d0 i ", "\u202ea", "\u2067a", "\u200d", "\ufe0f"}) {
        static_cast<void>(textOutline("i" + repeated(piece, 20'000), sans, 10));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10)) << "usually a half";
}

TEST(TextOutline, MayBeAskedForInSeveralThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int j = 0; j < 20; ++j) {
                EXPECT_FALSE(textOutline("H" + std::to_string(i * j), sans, 10).segments.empty());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(OffsetForAnchor, GoesByTheInkedBox) {
    const Path path{{PathSegment{PathSegment::Move{{2, 0}}}, PathSegment{PathSegment::Line{{6, 0}}}}};
    EXPECT_EQ(offsetForAnchor(path, dom::TextAnchor::start), 2);
    EXPECT_EQ(offsetForAnchor(path, dom::TextAnchor::middle), -4);
    EXPECT_EQ(offsetForAnchor(path, dom::TextAnchor::end), -6);
    EXPECT_EQ(offsetForAnchor(Path{}, dom::TextAnchor::end), 0);
    // Curves count, their control points do not: the furthest point of this one is at three quarters of the way there.
    const Path curve{{PathSegment{PathSegment::Move{{0, 0}}}, PathSegment{PathSegment::Cubic{{0, 4}, {4, 0}, {4, 4}}}}};
    EXPECT_FLOAT_EQ(offsetForAnchor(curve, dom::TextAnchor::end), -3);
    const Path back{{PathSegment{PathSegment::Move{{0, 0}}}, PathSegment{PathSegment::Cubic{{9, 0}, {-9, 0}, {9, 0}}}}};
    EXPECT_FLOAT_EQ(offsetForAnchor(back, dom::TextAnchor::start), -2.52F);
}

TEST(Texts, StandWhereTheirInkBeginsOrEnds) {
    const Tree tree = built(R"(<g font-family="DejaVu Sans" font-size="2048" fill="red">
        <text x="10" y="20">H</text><text x="10" text-anchor="middle">H</text><text text-anchor="end"> H
        </text></g>)");
    const auto text = [&tree](std::size_t index) -> const Layer::TextContents& {
        return contentsOf<Layer::TextContents>(child(child(tree), index));
    };
    EXPECT_EQ(text(0).text, "H");
    EXPECT_NEAR(text(0).at.x, 10 + 201, 1);
    EXPECT_EQ(text(0).at.y, 20);
    EXPECT_EQ(text(0).attributes.color, (Color{RGBA{1, 0, 0, 1}}));
    EXPECT_EQ(text(0).attributes.fontName, sans);
    EXPECT_EQ(text(0).attributes.size, 2048);
    EXPECT_EQ(text(1).attributes.anchor, dom::TextAnchor::middle);
    EXPECT_NEAR(text(1).at.x, 10 - (201 + 1339) / 2, 1);
    EXPECT_EQ(text(2).text, "H");
    EXPECT_NEAR(text(2).at.x, -1339, 1);
}

TEST(Texts, HaveDefaultsAndAreFilledWithColoursOnly) {
    const Tree tree = built(R"x(<linearGradient id="g"><stop/><stop/></linearGradient>
        <text fill-opacity="0.5">a</text><text fill="url(#g)">a</text>)x");
    const auto& attributes = contentsOf<Layer::TextContents>(child(tree, 0)).attributes;
    EXPECT_EQ(attributes.color, (Color{RGBA{0, 0, 0, 0.5F}}));
    EXPECT_EQ(attributes.fontName, "Helvetica");
    EXPECT_EQ(attributes.size, 12);
    EXPECT_EQ(attributes.anchor, dom::TextAnchor::start);
    EXPECT_EQ(contentsOf<Layer::TextContents>(child(tree, 1)).attributes.color, Color{NoColor{}});
}

TEST(Texts, AreLimitedInAll) {
    const std::string contents = "<text id=\"t\">" + std::string(50'000, 'i') + "</text>";
    EXPECT_THAT(errorOf(contents + repeated(R"(<use xlink:href="#t"/>)", 10)), IsEmpty());
    EXPECT_THAT(errorOf(contents + repeated(R"(<use xlink:href="#t"/>)", 100)), HasSubstr("more text"));
}

TEST(Texts, OfTooManyFamiliesAreRefused) {
    std::string texts;
    for (int i = 0; i < 256; ++i) {
        texts += "<text font-family=\"f" + std::to_string(i) + "\">a</text>";
    }
    EXPECT_THAT(errorOf(texts), IsEmpty());
    EXPECT_THAT(errorOf(texts + texts + R"(<text font-family="one more">a</text>)"), HasSubstr("different fonts"));
}

}  // namespace
}  // namespace sorvik::draw::layer_tree
