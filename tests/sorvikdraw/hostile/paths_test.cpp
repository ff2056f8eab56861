// Shapes of very many parts, and pens that make work.

#include "hostile_file.h"

namespace sorvik::draw::test {
namespace {

std::string path(std::string_view attributes, const std::string& data) {
    return document(std::string("<path ").append(attributes).append(R"( d=")").append(data).append(R"("/>)"));
}

constexpr std::size_t most = 250'000;

/// Lines from edge to edge, so that each crosses most of the others; one segment fewer is added than `segments`.
std::string crossing(std::size_t segments) {
    return "M0 0" + joined(segments - 1, [](std::size_t i) {
               return "L" + std::to_string(i * 7919 % 97) + (i % 2 == 0 ? " 0" : " 99");
           });
}

/// The same as curves.
std::string crossingCurves(std::size_t segments) {
    return "M0 0" + joined(segments - 1, [](std::size_t i) {
               return "Q" + std::to_string(i * 31 % 99) + " 50 " + std::to_string(i * 7919 % 97) +
                      (i % 2 == 0 ? " 0" : " 99");
           });
}

std::string mostSegments() { return path("", "M0 0" + repeated("h1", most - 1)); }
std::string oneSegmentMore() { return path("", "M0 0" + repeated("h1", most)); }
std::string farMoreSegments() { return path("", "M0 0" + repeated("h1", 20 * most)); }
std::string moves() { return path(R"(stroke="red" stroke-linecap="round")", repeated("M1 1", most)); }
std::string closings() { return path(R"(stroke="red")", "M1 1" + repeated("z", most - 1)); }
std::string blanksAfterClosing() { return path("", "M1 1z 5 5"); }
std::string crossingFill() { return path("", crossing(most)); }
std::string crossingFillOfFew() { return path("", crossing(2'000)); }
std::string crossingEvenOdd() { return path(R"(fill-rule="evenodd")", crossing(most)); }
std::string crossingStroke() { return path(R"(fill="none" stroke="red")", crossing(most)); }
std::string crossingStrokeOfFew() { return path(R"(fill="none" stroke="red")", crossing(1'000)); }
std::string crossingRoundStroke() {
    return path(R"(fill="none" stroke="red" stroke-linejoin="round" stroke-width="9")", crossing(most));
}
std::string crossingCurvesStroke() {
    return path(R"(fill="none" stroke="red" stroke-width="5")", crossingCurves(most));
}
std::string crossingGradientStroke() {
    return document(R"x(<linearGradient id="g"><stop/><stop offset="1"/></linearGradient>
        <path fill="none" stroke="url(#g)" d=")x" +
                    crossing(most) + R"("/>)");
}
std::string wideRoundPen() {
    return path(R"(fill="none" stroke="red" stroke-width="1e6" stroke-linejoin="round" stroke-linecap="round")",
                crossingCurves(most));
}
std::string dashes() { return path(R"(fill="none" stroke="red" stroke-dasharray="1e-9 1e-9")", "M0 0H80V80H0"); }
std::string manyDashes() {
    return path(R"(fill="none" stroke="red" stroke-dasharray=")" + repeated("1,", 500'000) + R"(")", "M0 0H80V80H0");
}
std::string hugeArcs() { return path(R"(stroke="red")", "M0 0" + repeated("A1e30 1e30 0 1 1 1 1", 1'000)); }
std::string arcs() { return path(R"(stroke="red")", "M0 0" + repeated("a9 5 30 1 1 1 1", most - 1)); }
std::string smoothCurves() { return path(R"(fill="none" stroke="red")", "M0 0q9 9 9 0" + repeated("t.1 0", most - 2)); }
std::string curveBeyondMeasure() {
    return path(R"(stroke="red" stroke-width="5")", "M0 0C1e30 1e30-1e30 1e30 1 1S-1e38 3e38 5 5T9 9");
}
std::string loopsOfTheLargestKind() {
    return path(R"(stroke="red" stroke-width="50")",
                "M0 0" + repeated("C800000 800000-800000 800000 90 0 800000-800000-800000-800000 0 90", 5'000));
}

std::string points() {
    return document(
        R"(<polyline fill="none" stroke="red" points=")" +
        joined(1'000'000, [](std::size_t i) { return std::to_string(i % 89) + (i % 2 == 0 ? " 0 " : " 9 "); }) +
        R"("/>)");
}
std::string crossingPolygon() {
    return document(
        R"(<polygon points=")" +
        joined(200'000, [](std::size_t i) { return std::to_string(i * 7919 % 97) + (i % 2 == 0 ? " 0 " : " 99 "); }) +
        R"("/>)");
}
std::string manySmallStrokes() {
    return document(repeated(R"(<circle r="50" cx="30" cy="30" fill="none" stroke="red" stroke-width="7"/>)", 100'000));
}
std::string longNumber() { return path("", "M0 0L" + repeated("1", 2'000'000) + " 5"); }
std::string longFraction() { return path("", "M0 0L0." + repeated("0", 2'000'000) + "1 5"); }
std::string unfinished() { return path("", "M0 0" + repeated("h1", 1'000) + "C1 2 3"); }
std::string unfinishedArc() { return path("", "M0 0A1 1 0 7 1 5 5"); }

constexpr std::array paths = {
    HostileFile{"Segments250000", End::drawn, mostSegments},
    HostileFile{"Segments250001", End::refused, oneSegmentMore},
    HostileFile{"Segments5000000", End::refused, farMoreSegments},
    HostileFile{"Moves", End::drawn, moves},
    HostileFile{"Closings", End::drawn, closings},
    HostileFile{"NumbersAfterClosing", End::refused, blanksAfterClosing},
    HostileFile{"CrossingFill", End::either, crossingFill},
    HostileFile{"CrossingFillOfFew", End::drawn, crossingFillOfFew},
    HostileFile{"CrossingEvenOdd", End::either, crossingEvenOdd},
    HostileFile{"CrossingStroke", End::either, crossingStroke},
    HostileFile{"CrossingStrokeOfFew", End::drawn, crossingStrokeOfFew},
    HostileFile{"CrossingRoundStroke", End::either, crossingRoundStroke},
    HostileFile{"CrossingCurvesStroke", End::either, crossingCurvesStroke},
    HostileFile{"CrossingGradientStroke", End::either, crossingGradientStroke},
    HostileFile{"WideRoundPen", End::either, wideRoundPen},
    HostileFile{"Dashes", End::drawn, dashes},
    HostileFile{"ManyDashes", End::either, manyDashes},
    HostileFile{"HugeArcs", End::either, hugeArcs},
    HostileFile{"Arcs", End::either, arcs},
    HostileFile{"SmoothCurves", End::either, smoothCurves},
    HostileFile{"CurveBeyondMeasure", End::either, curveBeyondMeasure},
    HostileFile{"LoopsOfTheLargestKind", End::either, loopsOfTheLargestKind},
    HostileFile{"Points1000000", End::either, points},
    HostileFile{"CrossingPolygon", End::either, crossingPolygon},
    HostileFile{"ManySmallStrokes", End::either, manySmallStrokes},
    HostileFile{"LongNumber", End::either, longNumber},
    HostileFile{"LongFraction", End::either, longFraction},
    HostileFile{"Unfinished", End::refused, unfinished},
    HostileFile{"UnfinishedArc", End::refused, unfinishedArc},
};
INSTANTIATE_TEST_SUITE_P(Paths, HostileFiles, testing::ValuesIn(paths), nameOf);

}  // namespace
}  // namespace sorvik::draw::test
