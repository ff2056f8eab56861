// Sizes and coordinates beyond measure, and what is no number at all.

#include "hostile_file.h"

namespace sorvik::draw::test {
namespace {

template <const auto& attributes>
std::string rootWith() {
    return documentWith(attributes, "");
}

constexpr char side32767[] = R"(width="32767" height="10" viewBox="0 0 100 100")";
constexpr char side32768[] = R"(width="32768" height="10" viewBox="0 0 100 100")";
constexpr char sidesOf32767[] = R"(width="32767" height="32767" viewBox="0 0 100 100")";
constexpr char sidesOf9000[] = R"(width="9000" height="9000" viewBox="0 0 100 100")";
constexpr char zero[] = R"(width="0px" height="100")";
constexpr char zeroByTruncation[] = R"(viewBox="0 0 0.9 100")";
constexpr char negative[] = R"(width="-5" height="100")";
constexpr char tooLargeForIntegers[] = R"(width="1e30" height="100")";
constexpr char justTooLargeForIntegers[] = R"(width="2147483648" height="9223372036854775808")";
constexpr char notANumber[] = R"(width="nan" height="nan")";
constexpr char infinite[] = R"(width="inf" height="Infinity")";
constexpr char overflowing[] = R"(width="1e999" height="1e-999")";
constexpr char noSize[] = R"(id="a")";
constexpr char viewBoxOfZero[] = R"(width="100" height="100" viewBox="0 0 0 0")";
constexpr char viewBoxNegative[] = R"(width="100" height="100" viewBox="0 0 -10 -10")";
constexpr char viewBoxOfNaN[] = R"(width="100" height="100" viewBox="nan nan nan nan")";
constexpr char viewBoxTiny[] = R"(width="100" height="100" viewBox="0 0 1e-30 1e-30")";
constexpr char viewBoxHuge[] = R"(width="100" height="100" viewBox="-1e30 -1e30 1e30 1e30")";
constexpr char viewBoxOfThree[] = R"(width="100" height="100" viewBox="0 0 10")";
constexpr char viewBoxOfFive[] = R"(width="100" height="100" viewBox="0 0 10 10 10")";

constexpr std::array roots = {
    HostileFile{"Side32767", End::drawn, rootWith<side32767>},
    HostileFile{"Side32768", End::noPicture, rootWith<side32768>},
    HostileFile{"SidesOf32767", End::noPicture, rootWith<sidesOf32767>},
    HostileFile{"SidesOf9000", End::drawn, rootWith<sidesOf9000>},
    HostileFile{"Zero", End::refused, rootWith<zero>},
    HostileFile{"ZeroByTruncation", End::refused, rootWith<zeroByTruncation>},
    HostileFile{"Negative", End::refused, rootWith<negative>},
    HostileFile{"TooLargeForIntegers", End::refused, rootWith<tooLargeForIntegers>},
    HostileFile{"JustTooLargeForIntegers", End::refused, rootWith<justTooLargeForIntegers>},
    HostileFile{"NotANumber", End::refused, rootWith<notANumber>},
    HostileFile{"Infinite", End::refused, rootWith<infinite>},
    HostileFile{"Overflowing", End::refused, rootWith<overflowing>},
    HostileFile{"NoSize", End::refused, rootWith<noSize>, {}, "width"},
    HostileFile{"ViewBoxOfZero", End::either, rootWith<viewBoxOfZero>, {}, {}, false},
    HostileFile{"ViewBoxNegative", End::either, rootWith<viewBoxNegative>, {}, {}, false},
    HostileFile{"ViewBoxOfNaN", End::refused, rootWith<viewBoxOfNaN>},
    HostileFile{"ViewBoxTiny", End::either, rootWith<viewBoxTiny>, {}, {}, false},
    HostileFile{"ViewBoxHuge", End::either, rootWith<viewBoxHuge>, {}, {}, false},
    HostileFile{"ViewBoxOfThree", End::refused, rootWith<viewBoxOfThree>},
    HostileFile{"ViewBoxOfFive", End::refused, rootWith<viewBoxOfFive>},
};
INSTANTIATE_TEST_SUITE_P(Roots, HostileFiles, testing::ValuesIn(roots), nameOf);

constexpr char ordinary[] = R"(width="100" height="100")";

constexpr std::array canvases = {
    HostileFile{"Small", End::drawn, rootWith<ordinary>, "20x20"},
    HostileFile{"Widest", End::drawn, rootWith<ordinary>, "32767x20"},
    HostileFile{"Highest", End::drawn, rootWith<ordinary>, "20x32767"},
    HostileFile{"TooWide", End::noPicture, rootWith<ordinary>, "32768x20"},
    HostileFile{"TooManyPixels", End::noPicture, rootWith<ordinary>, "32767x32767"},
    HostileFile{"LargestIntegers", End::refused, rootWith<ordinary>, "2147483647x2147483647"},
    HostileFile{"BeyondIntegers", End::refused, rootWith<ordinary>, "4294967297x5"},
};
INSTANTIATE_TEST_SUITE_P(Canvases, HostileFiles, testing::ValuesIn(canvases), nameOf);

/// Every shape and every attribute that is a number, in turn with the value, the others sound.
std::string everyNumber(std::string_view value) {
    struct Shape {
        std::string_view open;
        std::array<std::string_view, 6> names;
        std::string_view close;
    };
    constexpr std::array shapes = {
        Shape{"<line", {"x1", "y1", "x2", "y2"}, "/>"},
        Shape{"<circle", {"cx", "cy", "r"}, "/>"},
        Shape{"<ellipse", {"cx", "cy", "rx", "ry"}, "/>"},
        Shape{"<rect", {"x", "y", "width", "height", "rx", "ry"}, "/>"},
        Shape{R"(<svg viewBox="0 0 9 9")", {"x", "y", "width", "height"}, R"(><rect width="5" height="5"/></svg>)"},
        Shape{R"(<text font-family="DejaVu Sans")", {"x", "y", "font-size", "stroke-width"}, ">text</text>"},
        Shape{R"(<use xlink:href="#sound")", {"x", "y", "stroke-width"}, "/>"},
    };
    std::string all = R"(<rect id="sound" width="5" height="5"/>)";
    for (const Shape& shape : shapes) {
        for (std::size_t odd = 0; odd < shape.names.size() && !shape.names[odd].empty(); ++odd) {
            all += std::string(shape.open).append(R"( stroke="red")");
            for (std::size_t i = 0; i < shape.names.size() && !shape.names[i].empty(); ++i) {
                all.append(" ").append(shape.names[i]).append("=\"").append(i == odd ? value : "9").append("\"");
            }
            all += shape.close;
        }
    }
    return document(all);
}

template <const auto& value>
std::string numbers() {
    return everyNumber(value);
}

/// In the coordinates of paths and points, and in every argument of transforms.
template <const auto& value>
std::string lists() {
    std::string text = R"x(<g stroke="red" stroke-width="3">
        <path d="M5 5L@ 9 9 @C1 2 @ 4 5 @Q9 9 @ 9A@ 9 @ 1 1 50 50H@V1z"/><polygon points="1 1 @ 50 50 @"/>
        <g transform="translate(@)"><rect width="9" height="9"/></g>
        <g transform="rotate(@) scale(@) skewX(@) matrix(1 0 @ 1 0 0)"><rect width="9" height="9"/></g></g>)x";
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@')) {
        text.replace(at, 1, value);
    }
    return document(text);
}

constexpr char billion[] = "1e9";
constexpr char negativeBillion[] = "-1e9";
constexpr char nearlyTooLarge[] = "8300000";
constexpr char huge[] = "1e30";
constexpr char largest[] = "3.4e38";
constexpr char tooLarge[] = "1e999";
constexpr char tiny[] = "1e-30";
constexpr char smallest[] = "1e-45";
constexpr char infinity[] = "inf";
constexpr char nan[] = "nan";
constexpr char negativeZero[] = "-0";
constexpr char ninety[] = "90";

constexpr std::array coordinates = {
    HostileFile{"Billion", End::either, numbers<billion>},
    HostileFile{"NegativeBillion", End::either, numbers<negativeBillion>},
    HostileFile{"NearlyTooLarge", End::either, numbers<nearlyTooLarge>},
    HostileFile{"Huge", End::either, numbers<huge>},
    HostileFile{"Largest", End::either, numbers<largest>},
    HostileFile{"TooLarge", End::either, numbers<tooLarge>},
    HostileFile{"Tiny", End::either, numbers<tiny>},
    HostileFile{"Smallest", End::either, numbers<smallest>},
    HostileFile{"Infinity", End::refused, numbers<infinity>},
    HostileFile{"NaN", End::refused, numbers<nan>},
    HostileFile{"NegativeZero", End::either, numbers<negativeZero>},
    HostileFile{"BillionInLists", End::either, lists<billion>},
    HostileFile{"NearlyTooLargeInLists", End::either, lists<nearlyTooLarge>},
    HostileFile{"HugeInLists", End::either, lists<huge>},
    HostileFile{"LargestInLists", End::either, lists<largest>},
    HostileFile{"TooLargeInLists", End::either, lists<tooLarge>},
    HostileFile{"TinyInLists", End::drawn, lists<tiny>},
    HostileFile{"SmallestInLists", End::drawn, lists<smallest>},
    HostileFile{"InfinityInLists", End::refused, lists<infinity>},
    HostileFile{"NaNInLists", End::refused, lists<nan>},
    HostileFile{"NegativeZeroInLists", End::drawn, lists<negativeZero>},
    HostileFile{"NinetyInLists", End::drawn, lists<ninety>},
};
INSTANTIATE_TEST_SUITE_P(Coordinates, HostileFiles, testing::ValuesIn(coordinates), nameOf);

/// Painted in every way under the transform.
template <const auto& transform>
std::string under() {
    return document(R"x(<linearGradient id="g"><stop/><stop offset="1"/></linearGradient>
        <pattern id="p" width="4" height="4"><rect width="2" height="2"/></pattern>
        <clipPath id="c"><circle r="30"/></clipPath><mask id="m"><rect width="9" height="9" fill="white"/></mask>
        <g transform=")x" +
                    std::string(transform) + R"x("><circle r="40" fill="url(#g)" stroke="url(#g)" stroke-width="3"/>
        <rect width="50" height="50" fill="url(#p)" stroke="red"/><text y="9">text</text>
        <g opacity="0.5" clip-path="url(#c)"><rect width="50" height="50" mask="url(#m)"/></g></g>)x");
}

constexpr char flat[] = "scale(1 0)";
constexpr char nothing[] = "scale(0)";
constexpr char folded[] = "matrix(1 1 1 1 0 0)";
constexpr char enlarged[] = "scale(1e30)";
constexpr char enlargedTwice[] = "scale(1e30) scale(1e30)";
constexpr char shrunk[] = "scale(1e-30)";
constexpr char largeAndBack[] = "scale(1e20) scale(1e-20)";
constexpr char largeScale[] = "scale(100000)";
constexpr char farAway[] = "translate(1e30 1e30)";
constexpr char farAndBack[] = "translate(1e9) translate(-1e9)";
constexpr char skewed[] = "skewX(89.99999) skewY(89.99999)";
constexpr char turned[] = "rotate(1e30)";

constexpr std::array transforms = {
    HostileFile{"Flat", End::drawn, under<flat>},
    HostileFile{"Nothing", End::drawn, under<nothing>},
    HostileFile{"Folded", End::drawn, under<folded>},
    HostileFile{"Enlarged", End::either, under<enlarged>},
    HostileFile{"EnlargedTwice", End::either, under<enlargedTwice>},
    HostileFile{"Shrunk", End::drawn, under<shrunk>},
    HostileFile{"LargeAndBack", End::either, under<largeAndBack>},
    HostileFile{"LargeScale", End::either, under<largeScale>},
    HostileFile{"FarAway", End::either, under<farAway>},
    HostileFile{"FarAndBack", End::either, under<farAndBack>},
    HostileFile{"Skewed", End::either, under<skewed>},
    HostileFile{"Turned", End::either, under<turned>},
};
INSTANTIATE_TEST_SUITE_P(Transforms, HostileFiles, testing::ValuesIn(transforms), nameOf);

std::string manyTransforms() {
    return document(R"(<g transform=")" + repeated("rotate(1 5 5) ", 200'000) +
                    R"("><rect width="9" height="9"/></g>)");
}
std::string growingTransforms() {
    return document(repeated(R"x(<g transform="scale(10)">)x", 1'000) + R"(<rect width="9" height="9"/>)" +
                    repeated("</g>", 1'000));
}
std::string openTransform() { return document(R"(<g transform="translate(1,"/>)"); }

constexpr std::array transformLists = {
    HostileFile{"Of200000", End::either, manyTransforms},
    HostileFile{"Growing", End::either, growingTransforms},
    HostileFile{"Unfinished", End::refused, openTransform, {}, "transform"},
};
INSTANTIATE_TEST_SUITE_P(TransformLists, HostileFiles, testing::ValuesIn(transformLists), nameOf);

}  // namespace
}  // namespace sorvik::draw::test
