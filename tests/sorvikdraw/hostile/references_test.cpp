// References that multiply, run in circles or lead nowhere.

#include "hostile_file.h"

namespace sorvik::draw::test {
namespace {

std::string numbered(std::string_view name, std::size_t number) { return std::string(name) + std::to_string(number); }

// Uses

std::string use(const std::string& id, std::string_view more = {}) {
    return R"(<use xlink:href="#)" + id + R"(" )" + std::string(more) + "/>";
}

/// Each group uses the one before `times` times.
std::string usesOfUses(std::size_t depth, std::size_t times) {
    return document(R"(<defs><rect id="u0" width="1" height="1"/>)" +
                    joined(depth,
                           [times](std::size_t i) {
                               return R"(<g id=")" + numbered("u", i + 1) + R"(">)" +
                                      repeated(use(numbered("u", i)), times) + "</g>";
                           }) +
                    "</defs>" + use(numbered("u", depth)));
}
std::string usesDoubling30Times() { return usesOfUses(30, 2); }
std::string usesTenfold10Times() { return usesOfUses(10, 10); }
std::string usesInARowOf60() { return usesOfUses(60, 1); }
std::string usesInARowOf10000() { return usesOfUses(10'000, 1); }

std::string useOfItself() { return document(R"(<use id="a" xlink:href="#a"/>)"); }
std::string useOfItsParent() { return document(R"(<g id="a"><use xlink:href="#a"/></g>)"); }
std::string useOfEachOther() {
    return document(R"(<g id="a"><use xlink:href="#b"/></g><g id="b"><use xlink:href="#a"/></g>)");
}
std::string useOfTheRoot() { return documentWith(R"(id="root" width="100" height="100")", use("root")); }
std::string useOfNothing() { return document(use("nothing")); }
std::string useOfALongName() { return document(use(repeated("name ", 300'000))); }
std::string useOfALineBreak() { return document(use("a&#10;[parsing error]&#27;[2J")); }

std::string useOfALongPath() {
    return document(R"(<path id="p" d="M0 0)" + repeated("l.1 .1 .1-.1", 50'000) + R"("/>)" +
                    repeated(use("p", R"(x="1")"), 10'000));
}

constexpr std::array uses = {
    HostileFile{"Doubling30Times", End::refused, usesDoubling30Times},
    HostileFile{"Tenfold10Times", End::refused, usesTenfold10Times},
    HostileFile{"InARowOf60", End::drawn, usesInARowOf60},
    HostileFile{"InARowOf10000", End::refused, usesInARowOf10000},
    HostileFile{"OfItself", End::refused, useOfItself},
    HostileFile{"OfItsParent", End::refused, useOfItsParent},
    HostileFile{"OfEachOther", End::refused, useOfEachOther},
    HostileFile{"OfTheRoot", End::refused, useOfTheRoot},
    HostileFile{"OfNothing", End::refused, useOfNothing, {}, "missing referenced element: #nothing"},
    HostileFile{"OfALongName", End::refused, useOfALongName},
    HostileFile{"OfALineBreak", End::refused, useOfALineBreak},
    HostileFile{"OfALongPath10000Times", End::either, useOfALongPath},
};
INSTANTIATE_TEST_SUITE_P(Uses, HostileFiles, testing::ValuesIn(uses), nameOf);

// Patterns

/// `<pattern id="name{i+1}">` holds `times` shapes filled with the pattern before.
std::string patternsInPatterns(std::size_t depth, std::size_t times) {
    return document(joined(depth,
                           [times](std::size_t i) {
                               return R"(<pattern width="10" height="10" id=")" + numbered("p", i + 1) + R"(">)" +
                                      repeated(
                                          R"(<rect width="9" height="9" fill="url(#)" + numbered("p", i) + R"x()"/>)x",
                                          times) +
                                      "</pattern>";
                           }) +
                    R"(<pattern id="p0" width="2" height="2"><path d="M0 0h1v1z"/></pattern>)" +
                    R"(<rect width="80" height="80" fill="url(#)" + numbered("p", depth) + R"x()"/>)x");
}
std::string patternsTenfold10Times() { return patternsInPatterns(10, 10); }
std::string patternsDoubling30Times() { return patternsInPatterns(30, 2); }
std::string patternsInARowOf1000() { return patternsInPatterns(1000, 1); }

std::string patternOfItself() {
    return document(R"x(<pattern id="p" width="9" height="9"><rect width="9" height="9" fill="url(#p)"/></pattern>
        <rect width="80" height="80" fill="url(#p)"/>)x");
}
std::string patternsOfEachOther() {
    return document(R"x(<pattern id="p" width="9" height="9"><rect width="9" height="9" fill="url(#q)"/></pattern>
        <pattern id="q" width="9" height="9"><rect width="9" height="9" fill="url(#p)"/></pattern>
        <rect width="80" height="80" fill="url(#p)"/>)x");
}

template <char... size>
std::string patternOfSize() {
    constexpr char text[] = {size..., 0};
    return document(R"(<pattern id="p" width=")" + std::string(text) + R"(" height=")" + text +
                    R"x("><rect width="1" height="1" fill="red"/></pattern>
        <rect width="80" height="80" fill="url(#p)"/>)x");
}

std::string patternOfManyShapes() {
    return document(R"(<pattern id="p" width="4" height="4">)" + repeated(R"(<circle r="3"/>)", 20'000) +
                    R"(</pattern>)" + repeated(R"x(<rect width="80" height="80" fill="url(#p)"/>)x", 1'000));
}

std::string patternScaledUp() {
    return document(R"x(<pattern id="p" width="30000" height="30000"><circle r="20000"/></pattern>
        <g transform="scale(1000)"><rect width="80" height="80" fill="url(#p)"/></g>)x");
}

constexpr std::array patterns = {
    HostileFile{"Tenfold10Times", End::either, patternsTenfold10Times},
    HostileFile{"Doubling30Times", End::either, patternsDoubling30Times},
    HostileFile{"InARowOf1000", End::refused, patternsInARowOf1000},
    HostileFile{"OfItself", End::either, patternOfItself},
    HostileFile{"OfEachOther", End::either, patternsOfEachOther},
    HostileFile{"OfNoSize", End::drawn, patternOfSize<'0'>},
    HostileFile{"OfNegativeSize", End::drawn, patternOfSize<'-', '5'>},
    HostileFile{"OfTinySize", End::either, patternOfSize<'1', 'e', '-', '9'>},
    HostileFile{"OfSmallSize", End::either, patternOfSize<'.', '0', '0', '1'>},
    HostileFile{"OfHugeSize", End::either, patternOfSize<'1', 'e', '3', '0'>},
    HostileFile{"OfLargeSize", End::either, patternOfSize<'1', 'e', '6'>},
    HostileFile{"OfManyShapesManyTimes", End::either, patternOfManyShapes},
    HostileFile{"ScaledUp", End::either, patternScaledUp},
};
INSTANTIATE_TEST_SUITE_P(Patterns, HostileFiles, testing::ValuesIn(patterns), nameOf);

// Masks

std::string masksInMasks(std::size_t depth, std::size_t times) {
    return document(joined(depth,
                           [times](std::size_t i) {
                               return R"(<mask id=")" + numbered("m", i + 1) + R"(">)" +
                                      repeated(R"(<rect width="90" height="90" fill="#fff" mask="url(#)" +
                                                   numbered("m", i) + R"x()"/>)x",
                                               times) +
                                      "</mask>";
                           }) +
                    R"(<mask id="m0"><circle r="80" fill="white"/></mask>)" +
                    R"(<rect width="80" height="80" mask="url(#)" + numbered("m", depth) + R"x()"/>)x");
}
std::string masksTenfold10Times() { return masksInMasks(10, 10); }
std::string masksDoubling30Times() { return masksInMasks(30, 2); }
std::string masksInARowOf1000() { return masksInMasks(1000, 1); }

std::string maskOfItself() {
    return document(R"x(<mask id="m"><rect width="90" height="90" fill="white" mask="url(#m)"/></mask>
        <rect width="80" height="80" mask="url(#m)"/>)x");
}
std::string masksOfEachOther() {
    return document(R"x(<mask id="m"><rect width="90" height="90" fill="white" mask="url(#n)"/></mask>
        <mask id="n"><rect width="90" height="90" fill="white" mask="url(#m)"/></mask>
        <rect width="80" height="80" mask="url(#m)"/>)x");
}
std::string masksOfLargePictures() {
    return documentWith(R"(viewBox="0 0 100 100" width="5000" height="5000")",
                        R"(<mask id="m"><circle r="80" fill="white"/></mask>)" +
                            repeated(R"x(<rect width="80" height="80" mask="url(#m)"/>)x", 5'000));
}

constexpr std::array masks = {
    HostileFile{"Tenfold10Times", End::refused, masksTenfold10Times},
    HostileFile{"Doubling30Times", End::refused, masksDoubling30Times},
    HostileFile{"InARowOf1000", End::refused, masksInARowOf1000},
    HostileFile{"OfItself", End::either, maskOfItself},
    HostileFile{"OfEachOther", End::either, masksOfEachOther},
    HostileFile{"OfALargePicture5000Times", End::either, masksOfLargePictures},
};
INSTANTIATE_TEST_SUITE_P(Masks, HostileFiles, testing::ValuesIn(masks), nameOf);

// Clips

template <std::size_t depth>
std::string clipsInClips() {
    return document(R"(<clipPath id="c"><circle r="70"/><path d="M9 9h80v80z"/></clipPath>)" +
                    repeated(R"x(<g clip-path="url(#c)" transform="rotate(.1)">)x", depth) +
                    R"(<rect width="80" height="80"/>)" + repeated("</g>", depth));
}

std::string clipOfItself() {
    return document(R"x(<clipPath id="c"><rect width="50" height="50" clip-path="url(#c)"/></clipPath>
        <rect width="80" height="80" clip-path="url(#c)"/>)x");
}

std::string clipOfManyShapes(std::size_t shapes, std::size_t times) {
    return document(R"(<clipPath id="c">)" + repeated(R"(<circle r="70" cx="3"/>)", shapes) + "</clipPath>" +
                    repeated(R"x(<rect width="80" height="80" clip-path="url(#c)"/>)x", times));
}
std::string clipOf100000Shapes() { return clipOfManyShapes(100'000, 1); }
std::string clipOf1000Shapes10000Times() { return clipOfManyShapes(1'000, 10'000); }

std::string clipOfCrossingLines() {
    return document(
        R"(<clipPath id="c"><path d="M0 0)" +
        joined(100'000,
               [](std::size_t i) { return " " + std::to_string(i * 7919 % 97) + (i % 2 == 0 ? " 0" : " 99"); }) +
        R"x("/></clipPath><rect width="80" height="80" clip-path="url(#c)"/>)x");
}

constexpr std::array clips = {
    HostileFile{"InEachOther1000", End::either, clipsInClips<1000>},
    HostileFile{"InEachOther50", End::drawn, clipsInClips<50>},
    HostileFile{"OfItself", End::drawn, clipOfItself},
    HostileFile{"Of100000Shapes", End::either, clipOf100000Shapes},
    HostileFile{"Of1000Shapes10000Times", End::either, clipOf1000Shapes10000Times},
    HostileFile{"OfCrossingLines", End::either, clipOfCrossingLines},
};
INSTANTIATE_TEST_SUITE_P(Clips, HostileFiles, testing::ValuesIn(clips), nameOf);

// Gradients

std::string filledWithGradient(const std::string& gradients) {
    return document(gradients + R"x(<circle r="80" fill="url(#g)" stroke="url(#g)"/>)x");
}

template <std::size_t count>
std::string gradientOfStops() {
    return filledWithGradient(R"(<linearGradient id="g">)" +
                              joined(count,
                                     [](std::size_t i) {
                                         return R"(<stop offset="0.)" + std::to_string(100'000 + i) +
                                                R"(" stop-color="red"/><stop offset="0.5"/>)";
                                     }) +
                              "</linearGradient>");
}

std::string gradientOfStopsOutOfOrder() {
    return filledWithGradient(R"(<radialGradient id="g"><stop offset="1"/><stop offset="0.2" stop-color="red"/>
        <stop offset="0.9" stop-color="blue"/><stop offset="0"/></radialGradient>)");
}
std::string gradientOfStopBeyond() {
    return filledWithGradient(R"(<linearGradient id="g"><stop offset="7"/><stop offset="1"/></linearGradient>)");
}
std::string gradientOfItself() { return filledWithGradient(R"(<linearGradient id="g" xlink:href="#g"/>)"); }
std::string gradientsOfEachOther() {
    return filledWithGradient(R"(<radialGradient id="g" xlink:href="#h"/><radialGradient id="h" xlink:href="#g"/>)");
}
std::string gradientsInARow() {
    return filledWithGradient(joined(100'000,
                                     [](std::size_t i) {
                                         return R"(<linearGradient id=")" + numbered("g", i) + R"(" xlink:href="#)" +
                                                numbered("g", i + 1) + R"("/>)";
                                     }) +
                              R"(<linearGradient id="g" xlink:href="#g0"/>)");
}
std::string radialGradientsOfOddCircles() {
    return document(joined(8, [](std::size_t i) {
        constexpr std::array circles = {R"(r="0")",        R"(r="-5")",         R"(r="1e30")",
                                        R"(r="5" fr="9")", R"(fx="1e9" r="1")", R"(fr="-1" fx="-1e30")",
                                        R"(r="1e-30")",    R"(cx="nan")"};
        const std::string id = numbered("g", i);
        return R"(<radialGradient gradientUnits="userSpaceOnUse" id=")" + id + R"(" )" +
               (i == 7 ? R"(cx="-0")" : circles[i]) +
               R"(><stop stop-color="red"/><stop offset="1"/></radialGradient>)" +
               R"(<rect width="90" height="90" fill="url(#)" + id + R"x()"/>)x";
    }));
}
std::string gradientsOfOddTransforms() {
    return document(joined(6, [](std::size_t i) {
        constexpr std::array transforms = {"scale(0)",     "matrix(1 1 1 1 0 0)",         "scale(1e30)",
                                           "scale(1e-30)", "translate(1e30) rotate(1e9)", "skewX(90)"};
        const std::string id = numbered("g", i);
        return R"(<linearGradient id=")" + id + R"(" gradientTransform=")" + transforms[i] +
               R"("><stop stop-color="red"/><stop offset="1"/></linearGradient><rect width="90" height="90" fill="url(#)" +
               id + R"x()"/>)x";
    }));
}

constexpr std::array gradients = {
    HostileFile{"Of4096Stops", End::drawn, gradientOfStops<2048>},
    HostileFile{"Of4098Stops", End::refused, gradientOfStops<2049>},
    HostileFile{"Of200000Stops", End::refused, gradientOfStops<100'000>},
    HostileFile{"OfStopsOutOfOrder", End::drawn, gradientOfStopsOutOfOrder},
    HostileFile{"OfAStopBeyondTheEnd", End::refused, gradientOfStopBeyond, {}, "offset"},
    HostileFile{"OfItself", End::drawn, gradientOfItself},
    HostileFile{"OfEachOther", End::drawn, gradientsOfEachOther},
    HostileFile{"InARowOf100000", End::drawn, gradientsInARow},
    HostileFile{"OfOddCircles", End::drawn, radialGradientsOfOddCircles},
    HostileFile{"OfOddTransforms", End::drawn, gradientsOfOddTransforms},
};
INSTANTIATE_TEST_SUITE_P(Gradients, HostileFiles, testing::ValuesIn(gradients), nameOf);

// Groups that are painted apart

template <std::size_t depth>
std::string opacitiesInEachOther() {
    return documentWith(R"(viewBox="0 0 100 100" width="3000" height="3000")",
                        repeated(R"(<g opacity="0.99">)", depth) + R"(<circle r="90"/>)" + repeated("</g>", depth));
}

std::string opacitiesBesideEachOther() {
    return documentWith(R"(viewBox="0 0 100 100" width="5000" height="5000")",
                        repeated(R"(<g opacity="0.5"><circle r="90"/></g>)", 20'000));
}

constexpr std::array groups = {
    HostileFile{"OfOpacity1000", End::either, opacitiesInEachOther<1000>},
    HostileFile{"OfOpacity5", End::drawn, opacitiesInEachOther<5>},
    HostileFile{"OfOpacityBesideEachOther20000", End::either, opacitiesBesideEachOther},
};
INSTANTIATE_TEST_SUITE_P(Groups, HostileFiles, testing::ValuesIn(groups), nameOf);

}  // namespace
}  // namespace sorvik::draw::test
