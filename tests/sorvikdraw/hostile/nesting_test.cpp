// Elements inside each other, and beside each other, up to the limits and far beyond.

#include "hostile_file.h"

namespace sorvik::draw::test {
namespace {

std::string nested(std::string_view open, std::string_view close, std::size_t depth) {
    return repeated(open, depth) + R"(<rect width="5" height="5"/>)" + repeated(close, depth);
}

// The root and the innermost shape are open elements too.
constexpr std::size_t deepest = 1024 - 2;
constexpr std::size_t farTooDeep = 100'000;

template <std::size_t depth>
std::string groups() {
    return document(nested("<g>", "</g>", depth));
}
template <std::size_t depth>
std::string drawings() {
    return document(nested(R"(<svg width="9" height="9" viewBox="0 0 9 9">)", "</svg>", depth));
}
template <std::size_t depth>
std::string anchors() {
    return document(nested("<a>", "</a>", depth));
}
template <std::size_t depth>
std::string switches() {
    return document(nested("<switch>", "</switch>", depth));
}
template <std::size_t depth>
std::string unknowns() {
    return document(nested("<unknown>", "</unknown>", depth));
}
template <std::size_t depth>
std::string foreigners() {
    return document(nested(R"(<f xmlns="urn:f">)", "</f>", depth));
}
template <std::size_t depth>
std::string definitions() {
    return document(nested("<defs>", "</defs>", depth));
}

constexpr std::array inside = {
    HostileFile{"groups1024", End::drawn, groups<deepest>},
    HostileFile{"groups1025", End::refused, groups<deepest + 1>},
    HostileFile{"groups100000", End::refused, groups<farTooDeep>},
    HostileFile{"drawings1024", End::drawn, drawings<deepest>},
    HostileFile{"drawings1025", End::refused, drawings<deepest + 1>},
    HostileFile{"drawings100000", End::refused, drawings<farTooDeep>},
    HostileFile{"anchors1024", End::drawn, anchors<deepest>},
    HostileFile{"anchors100000", End::refused, anchors<farTooDeep>},
    HostileFile{"switches1024", End::drawn, switches<deepest>},
    HostileFile{"switches100000", End::refused, switches<farTooDeep>},
    HostileFile{"unknowns1024", End::drawn, unknowns<deepest>},
    HostileFile{"unknowns100000", End::refused, unknowns<farTooDeep>},
    HostileFile{"foreigners100000", End::either, foreigners<farTooDeep>},
    HostileFile{"definitions100000", End::refused, definitions<farTooDeep>},
};
INSTANTIATE_TEST_SUITE_P(Inside, HostileFiles, testing::ValuesIn(inside), nameOf);

// The root and the marker are elements too.
constexpr std::size_t most = 1'000'000 - 2;

template <std::size_t count>
std::string emptyGroups() {
    return document(repeated("<g/>", count));
}

std::string shapes() {
    return document(joined(300'000, [](std::size_t i) {
        const std::string at = std::to_string(i % 89);
        return R"(<rect class="c" x=")" + at + R"(" y=")" + at +
               R"(" width="2" height="2" fill="#123456" stroke="red"/>)";
    }));
}

std::string definitionsBesideEachOther() {
    return document(
        "<defs>" +
        joined(200'000, [](std::size_t i) { return R"(<circle id="i)" + std::to_string(i) + R"(" r="5"/>)"; }) +
        R"(</defs><use xlink:href="#i199999"/>)");
}

std::string uses() {
    return document(R"(<rect id="r" width="2" height="2"/>)" + repeated(R"(<use x="3" xlink:href="#r"/>)", 300'000));
}

/// Every one of them is searched for among all the others.
std::string usesOfLateElements() {
    const auto numbered = [](std::string_view before, std::string_view after) {
        return joined(50'000,
                      [=](std::size_t i) { return std::string(before).append(std::to_string(i)).append(after); });
    };
    return document(numbered(R"(<use xlink:href="#i)", R"("/>)") + numbered(R"(<path d="M1 1h1" id="i)", R"("/>)"));
}

std::string paints() {
    return document(joined(30'000, [](std::size_t i) {
        const std::string id = "g" + std::to_string(i);
        return R"(<linearGradient id=")" + id + R"("><stop/><stop offset="1"/></linearGradient><path fill="url(#)" +
               id + R"x()" d="M1 1h2v2"/>)x";
    }));
}

std::string attributesOfOneElement() {
    return document("<g " + joined(100'000, [](std::size_t i) { return "a" + std::to_string(i) + R"(="1" )"; }) + "/>");
}

constexpr std::array beside = {
    HostileFile{"groups1000000", End::drawn, emptyGroups<most>},
    HostileFile{"groups1000001", End::refused, emptyGroups<most + 1>},
    HostileFile{"groups10000000", End::refused, emptyGroups<10 * most>},
    HostileFile{"shapes300000", End::drawnAsPicture, shapes},
    HostileFile{"definitions200000", End::drawn, definitionsBesideEachOther},
    HostileFile{"uses300000", End::drawn, uses},
    HostileFile{"usesOfLateElements50000", End::drawn, usesOfLateElements},
    HostileFile{"paints30000", End::drawn, paints},
    HostileFile{"attributes100000", End::either, attributesOfOneElement},
};
INSTANTIATE_TEST_SUITE_P(Beside, HostileFiles, testing::ValuesIn(beside), nameOf);

}  // namespace
}  // namespace sorvik::draw::test
