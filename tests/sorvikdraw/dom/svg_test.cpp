#include "sorvikdraw/dom/svg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dom_testing.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw::dom {
namespace {

using draw::testing::errorOf;
using draw::testing::repeated;
using draw::testing::TemporaryFolder;
using Kind = XMLParserError::Kind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

SVG parsed(const std::string& content, XMLParserOptions options = skipInvalidElements) {
    return SVG::parseXML(
        "<svg width='100' height='80' xmlns:xlink='http://www.w3.org/1999/xlink'>" + content + "</svg>", options);
}

XMLParserError errorIn(const std::string& content, XMLParserOptions options = skipInvalidElements) {
    return errorOf([&] { static_cast<void>(parsed(content, options)); });
}

// The kind and what it names, in one text.
std::string failure(const std::string& document) {
    const auto error = errorOf([&] { static_cast<void>(SVG::parseXML(document)); });
    switch (error.kind()) {
        case Kind::missingAttribute:
            return "missing " + error.name();
        case Kind::invalidAttribute:
            return "invalid " + error.name() + " " + error.reason();
        case Kind::invalid:
            return "invalid";
        case Kind::invalidDocument:
            return "document";
        case Kind::invalidElement:
        case Kind::other:
            break;
    }
    return "other";
}

std::string failureIn(const std::string& content) {
    return failure("<svg width='100' height='80'>" + content + "</svg>");
}

struct NameOf {
    std::string operator()(const Line&) const { return "line"; }
    std::string operator()(const Circle&) const { return "circle"; }
    std::string operator()(const Ellipse&) const { return "ellipse"; }
    std::string operator()(const Rect&) const { return "rect"; }
    std::string operator()(const Polyline&) const { return "polyline"; }
    std::string operator()(const Polygon&) const { return "polygon"; }
    std::string operator()(const Path&) const { return "path"; }
    std::string operator()(const Text& text) const { return "text:" + text.value; }
    std::string operator()(const Boxed<Image>&) const { return "image"; }
    std::string operator()(const Use&) const { return "use"; }
    std::string operator()(const Group&) const { return "g"; }
    std::string operator()(const Switch&) const { return "switch"; }
    std::string operator()(const Anchor&) const { return "a"; }
    std::string operator()(const NestedSVG&) const { return "svg"; }
};

// Elements as text, with their ids, children in braces. Only for shallow ones.
std::string written(std::span<const GraphicsElement* const> elements) {
    std::string text;
    for (const auto* element : elements) {
        text += (text.empty() ? "" : " ") + std::visit(NameOf(), element->kind);
        text += element->id ? "#" + *element->id : "";
        const auto children = childElements(*element);
        text += children.empty() ? "" : "{" + written(children) + "}";
    }
    return text;
}

template <typename Alternative>
const Alternative& only(const SVG& svg) {
    return std::get<Alternative>(svg.children.at(0)->kind);
}

TEST(SVG, TakesItsSizeFromAttributesOrTheViewBox) {
    const struct {
        std::string attributes;
        int width, height;
    } rows[] = {
        {"width='10.9' height='2'", 10, 2},
        {"width='2in' height='2pc'", 192, 32},
        {"width='1in' height='0' viewBox='0 0 20 10'", 20, 10},  // what begins as a ratio is one
        {"width='100%' height='50%' viewBox='0 0 20 10'", 20, 10},
        {"width='1' height='0.5' viewBox='0 0 20 10'", 20, 10},  // plain ratios
        {"width='2' viewBox='0 0 20.7 10.2'", 2, 10},
        {"viewBox='1,2,30 , 40'", 30, 40},
        {"width='-3.7' height='101%'", -3, 101},  // no ratio, so a coordinate
        {"width='10' height='10' style='width:20'", 20, 10},
        {"width='2147483000' height='10'", 2147483008, 10},
    };
    for (const auto& row : rows) {
        const SVG svg = SVG::parseXML("<svg " + row.attributes + "/>");
        EXPECT_EQ(svg.width, row.width) << row.attributes;
        EXPECT_EQ(svg.height, row.height) << row.attributes;
    }
}

TEST(SVG, KeepsItsPlaceAndViewBox) {
    const SVG svg = SVG::parseXML("<svg x='1' y='2mm' viewBox='-1 -2 3in 4'/>");
    EXPECT_EQ(svg.x, 1.0F);
    EXPECT_FLOAT_EQ(svg.y.value(), 7.559F);
    EXPECT_EQ(svg.viewBox, (ViewBox{-1, -2, 288, 4}));
    const SVG plain = SVG::parseXML("<svg width='3' height='4'/>");
    EXPECT_FALSE(plain.x || plain.y || plain.viewBox);
}

TEST(SVG, RefusesSizesThatAreNone) {
    const struct {
        std::string attributes, failure;
    } rows[] = {
        {"", "missing width"},
        {"width='100%' height='10'", "missing width"},
        {"width='1' height='10'", "missing width"},
        {"width='10'", "missing height"},
        {"width='10' height='x'", "invalid height x"},
        {"width='10' height='nan'", "invalid height nan"},
        {"width='3e9' height='10'", "invalid width 3000000000.000000"},
        {"width='10' height='2147483648'", "invalid height 2147483648.000000"},
        {"viewBox='0 0 1e30 1'", "invalid width 1000000015047466219876688855040.000000"},
        {"width='10' height='10' viewBox=''", "invalid"},
        {"width='10' height='10' viewBox='0 0 1'", "invalid"},
        {"width='10' height='10' viewBox='0 0 1 1 1'", "invalid"},
        {"width='10' height='10' viewBox='0,,0 1 1'", "invalid"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(failure("<svg " + row.attributes + "/>"), row.failure) << row.attributes;
    }
    EXPECT_EQ(failure("<html/>"), "invalid");
    EXPECT_EQ(failure("<svg xmlns='foreign'/>"), "document");
}

TEST(SVG, RootTakesStyleOverAttributes) {
    const SVG svg = SVG::parseXML("<svg width='9' height='9' fill='red' opacity='0.5' style='fill:blue' id='a'/>");
    EXPECT_EQ(svg.attributes.fill, Fill(Color{ColorKeyword::blue}));
    EXPECT_EQ(svg.attributes.opacity, 0.5F);
}

TEST(SVG, ReadsEveryElement) {
    const SVG svg = parsed(
        "<g id='g'/><line x1='1' y1='2' x2='3' y2='4'/><circle r='5'/><ellipse rx='1' ry='2'/>"
        "<rect width='1' height='2'/><polyline points='1 2'/><polygon points=''/><path d='M1 2'/><text>t</text><a/>"
        "<use xlink:href='#g'/><switch/><image xlink:href='a.png'/><svg width='7' height='8'/>");
    EXPECT_EQ(written(svg.children),
              "g#g line circle ellipse rect polyline polygon path text:t a use switch image svg");
}

TEST(SVG, ReadsTheFieldsOfElements) {
    const auto line = only<Line>(parsed("<line x1='1' y1='2px' x2='3' y2='4'/>"));
    EXPECT_THAT((std::array{line.x1, line.y1, line.x2, line.y2}), ElementsAre(1, 2, 3, 4));
    const auto circle = only<Circle>(parsed("<circle cy='2' r='3'/>"));
    EXPECT_EQ(std::tie(circle.cx, circle.cy, circle.r), std::tuple(std::nullopt, 2.0F, 3.0F));
    const auto ellipse = only<Ellipse>(parsed("<ellipse cx='1' rx='3' ry='4'/>"));
    EXPECT_EQ(std::tie(ellipse.cx, ellipse.cy, ellipse.rx, ellipse.ry), std::tuple(1.0F, std::nullopt, 3.0F, 4.0F));
    const auto rect = only<Rect>(parsed("<rect x='1' y='2' width='3' height='4' rx='5' ry='6'/>"));
    EXPECT_EQ(std::tie(rect.x, rect.y, rect.width, rect.height, rect.rx, rect.ry), std::tuple(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(only<Polyline>(parsed("<polyline points='1,2 3;4'/>")).points, ElementsAre(Point{1, 2}, Point{3, 4}));
    EXPECT_EQ(only<Path>(parsed("<path d='M1 2z'/>")).segments.size(), 2U);
    const auto use = only<Use>(parsed("<use xlink:href='#a' y='2'/>"));
    EXPECT_EQ(std::tie(use.href.absoluteString, use.x, use.y), std::tuple("#a", std::nullopt, 2.0F));
    EXPECT_EQ(only<Anchor>(parsed("<a href='http://x/y'/>")).href->absoluteString, "http://x/y");
    const Boxed<Image> image = only<Boxed<Image>>(
        parsed("<image xlink:href='data:image/png;base64,AA \n==' width='1' height='2' x='3' y='4'/>"));
    EXPECT_EQ(image->href.absoluteString, "data:image/png;base64,AA==");
    EXPECT_EQ(std::tie(image->width, image->height, image->x, image->y), std::tuple(1, 2, 3, 4));
}

TEST(SVG, TextIsItsTrimmedContent) {
    EXPECT_EQ(written(parsed("<text> \n </text><text/><text x='1' y='2'>\n one <tspan>two</tspan>\tthree </text>"
                             "<text>a<f:b xmlns:f='f'>b</f:b></text>")
                          .children),
              "text:one \tthree text:ab");
}

TEST(SVG, PassesOverWhatItDoesNotKnow) {
    EXPECT_EQ(written(parsed("<g><title>t</title><unknown><rect/></unknown><rect width='1' height='1'/></g>").children),
              "g{rect}");
    EXPECT_EQ(written(parsed("<f:layer xmlns:f='f'><g id='a'/></f:layer><f:rect xmlns:f='f'/>").children), "g#a");
}

TEST(SVG, ContainersKeepTheOrderOfTheDocument) {
    EXPECT_EQ(written(parsed("<g id='1'><a id='2'><g id='3'/></a><switch id='4'><g id='5'/><g id='6'/></switch></g>"
                             "<svg id='7' width='5' height='5'><g id='8'/><g id='9'/></svg><g id='10'/>")
                          .children),
              "g#1{a#2{g#3} switch#4{g#5 g#6}} svg#7{g#8 g#9} g#10");
}

TEST(SVG, ElementsHaveIdClassAttributesAndStyle) {
    const SVG svg = parsed("<g id='a' class='b c' fill='red' style='stroke: blue; fill : green ;'/>");
    const GraphicsElement& group = *svg.children.at(0);
    EXPECT_EQ(*group.id, "a");
    EXPECT_EQ(*group.className, "b c");
    EXPECT_EQ(group.attributes->fill, Fill(Color{ColorKeyword::red}));
    EXPECT_FALSE(group.attributes->stroke);
    EXPECT_EQ(group.style->fill, Fill(Color{ColorKeyword::green}));
    EXPECT_EQ(group.style->stroke, Fill(Color{ColorKeyword::blue}));
}

TEST(SVG, EqualAttributesAreShared) {
    const SVG svg = parsed(
        "<g fill='red' x='1'/><g fill='red' x='2'/><g fill='blue'/><g stroke='red'/><g style='fill:red'/>"
        "<g style='fill:red'/><g/><g x='3'/>");
    const auto& all = svg.children;
    EXPECT_EQ(all[0]->attributes, all[1]->attributes);
    EXPECT_NE(all[0]->attributes, all[2]->attributes);
    EXPECT_EQ(all[3]->attributes->stroke, Fill(Color{ColorKeyword::red}));
    EXPECT_FALSE(all[3]->attributes->fill);
    EXPECT_EQ(all[4]->style, all[5]->style);
    EXPECT_EQ(all[6]->attributes, all[7]->attributes);
    EXPECT_EQ(*all[6]->attributes, PresentationAttributes());
}

TEST(SVG, AFaultyElementEndsTheDocument) {
    const struct {
        std::string content, failure;
    } rows[] = {
        {"<line x1='1' y1='1' x2='1'/>", "missing y2"},
        {"<circle/>", "missing r"},
        {"<ellipse rx='1'/>", "missing ry"},
        {"<rect width='1'/>", "missing height"},
        {"<polyline/>", "missing points"},
        {"<polygon points='1'/>", "invalid points 1"},
        {"<path/>", "missing d"},
        {"<path d='M1'/>", "invalid d M1"},
        {"<use/>", "missing xlink:href"},
        {"<use href='#a'/>", "missing xlink:href"},
        {"<image href='a.png'/>", "missing xlink:href"},
        {"<circle r='x'/>", "invalid r x"},
        {"<g><g><g fill='none of these'/></g></g>", "invalid fill none of these"},
        {"<g style='fill'/>", "invalid"},
        {"<g style='fill:nonsense'/>", "invalid fill nonsense"},
        {"<unknown style='fill'/>", "invalid"},
        {"<clipPath/>", "missing id"},
        {"<mask/>", "missing id"},
        {"<pattern id='a' width='1'/>", "missing height"},
        {"<pattern id='a' width='1' height='1' patternUnits='x'/>", "invalid patternUnits x"},
        {"<filter id='a'><feGaussianBlur/></filter>", "missing stdDeviation"},
        {"<linearGradient/>", "missing id"},
        {"<radialGradient id='a' fr='x'/>", "invalid fr x"},
        {"<linearGradient id='a'><stop offset='2'/></linearGradient>", "invalid offset 2"},
        {"<linearGradient id='a' gradientTransform='turn(3)'/>", "invalid"},
        {"<defs><g/></defs>", "invalid"},
        {"<svg width='1'/>", "missing width"},
        // Elements that are drawn come before what they refer to, and that in an order of its own.
        {"<mask/><pattern/><clipPath><circle/></clipPath><circle r='x'/>", "invalid r x"},
        {"<defs><g/></defs><mask/><pattern/><linearGradient/><clipPath id='a'><circle/></clipPath>", "missing r"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(failureIn(row.content), row.failure) << row.content;
    }
}

TEST(SVG, ErrorsTellWhere) {
    EXPECT_STREQ(errorIn("<g>\n  <g>\n    <rect width='1'/></g></g>").what(),
                 "missing attribute \"height\" in <rect> at line 3, column 5");
    EXPECT_STREQ(errorIn("\n<linearGradient id='a' gradientTransform='no'/>").what(),
                 "invalid \"gradientTransform\": no in <linearGradient> at line 2, column 1");
}

TEST(SVG, SkipsInvalidAttributesOnRequest) {
    const SVG svg = parsed(
        "<circle cx='x' r='1' style='fill:nonsense' fill='blue'/>"
        "<linearGradient id='a' x1='?'><stop offset='?'/></linearGradient>",
        skipInvalidAttributes);
    EXPECT_FALSE(only<Circle>(svg).cx);
    EXPECT_EQ(*svg.children[0]->style, PresentationAttributes());
    EXPECT_EQ(svg.children[0]->attributes->fill, Fill(Color{ColorKeyword::blue}));
    EXPECT_EQ(svg.defs.linearGradients.at(0).stops.at(0).offset, 0);
    // What is required is not skipped.
    EXPECT_EQ(errorIn("<circle r='x'/>", skipInvalidAttributes).kind(), Kind::invalidAttribute);
    EXPECT_EQ(errorIn("<linearGradient id='a' gradientTransform='no'/>", skipInvalidAttributes).kind(), Kind::invalid);
}

TEST(Defs, AreFoundAnywhere) {
    const SVG svg = parsed(
        "<linearGradient id='a'/><g><clipPath id='b'><rect width='1' height='1'/></clipPath></g>"
        "<unknown><mask id='c' class='k' fill='red' style='stroke:blue'><g id='m'/></mask></unknown>"
        "<defs><pattern id='d' width='1' height='2' x='3' patternUnits='userSpaceOnUse'><g id='p'/></pattern>"
        "<filter id='e'><feOffset/><feGaussianBlur stdDeviation='2'/><feGaussianBlur stdDeviation='3'/></filter>"
        "<radialGradient id='f'/><rect id='g' width='1' height='1'/></defs>");
    const Defs& defs = svg.defs;
    EXPECT_EQ(written(svg.children), "g");
    EXPECT_EQ(defs.linearGradients.at(0).id, "a");
    EXPECT_EQ(defs.clipPaths.at(0).id, "b");
    EXPECT_EQ(written(defs.clipPaths.at(0).childElements), "rect");
    const Mask& mask = defs.masks.at(0);
    EXPECT_EQ(mask.id + *mask.className + written(mask.childElements), "ckg#m");
    EXPECT_EQ(mask.attributes.fill, Fill(Color{ColorKeyword::red}));
    EXPECT_EQ(mask.style.stroke, Fill(Color{ColorKeyword::blue}));
    const Pattern& pattern = defs.patterns.at(0);
    EXPECT_EQ(pattern.id + written(pattern.childElements), "dg#p");
    EXPECT_EQ(std::tie(pattern.x, pattern.y, pattern.width, pattern.height), std::tuple(3, std::nullopt, 1, 2));
    EXPECT_EQ(pattern.patternUnits, Units::userSpaceOnUse);
    EXPECT_FALSE(pattern.patternContentUnits);
    EXPECT_THAT(defs.filters.at(0).effects, ElementsAre(Filter::Effect{2}, Filter::Effect{3}));
    EXPECT_EQ(defs.radialGradients.at(0).id, "f");
    EXPECT_EQ(written(std::array{defs.elements.at("g")}), "rect#g");
    EXPECT_EQ(defs.elements.size(), 1U);
}

TEST(Defs, OneInsideAnotherOfItsKindIsNotFound) {
    const SVG svg = parsed(
        "<clipPath id='a'><clipPath id='b'/><mask id='c'/></clipPath><clipPath id='d'/>"
        "<defs><g id='e'><defs><g/></defs></g></defs>");
    EXPECT_EQ(svg.defs.clipPaths.size(), 2U);
    EXPECT_EQ(svg.defs.clipPaths.at(1).id, "d");
    EXPECT_EQ(svg.defs.masks.at(0).id, "c");
    EXPECT_EQ(svg.defs.elements.size(), 1U);
}

TEST(Defs, TheFirstOfAnIdStays) {
    const SVG svg = parsed("<defs><g id='a'/><g id='b'/></defs><g/><defs><switch id='a'/><switch id='c'/></defs>");
    EXPECT_EQ(written(std::array{svg.defs.elements.at("a"), svg.defs.elements.at("b"), svg.defs.elements.at("c")}),
              "g#a g#b switch#c");
}

TEST(Defs, UnknownElementsNeedNoId) {
    EXPECT_THAT(parsed("<defs><style>.a{fill:red}</style><title/><text> </text></defs>").defs.elements, IsEmpty());
}

TEST(Defs, GradientsHaveTheirFields) {
    const SVG svg = parsed(
        "<linearGradient id='a' x1='1' y2='4' gradientUnits='userSpaceOnUse' gradientTransform='scale(2)'"
        " xlink:href='#b'/>"
        "<radialGradient id='b' r='1' cx='2' cy='3' fr='4' fx='5' fy='6' gradientUnits='objectBoundingBox'"
        " xlink:href='no url'/>");
    const auto& linear = svg.defs.linearGradients.at(0);
    EXPECT_EQ(std::tie(linear.x1, linear.y1, linear.x2, linear.y2), std::tuple(1, std::nullopt, std::nullopt, 4));
    EXPECT_EQ(linear.gradientUnits, Units::userSpaceOnUse);
    EXPECT_THAT(linear.gradientTransform, ElementsAre(Transform{Transform::Scale{2, 2}}));
    EXPECT_EQ(linear.href.value().absoluteString, "#b");
    const auto& radial = svg.defs.radialGradients.at(0);
    EXPECT_EQ(std::tie(radial.r, radial.cx, radial.cy, radial.fr, radial.fx, radial.fy), std::tuple(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(radial.gradientUnits, Units::objectBoundingBox);
    EXPECT_FALSE(radial.href);
}

TEST(Defs, StopsFallBackToBlackAndOpaque) {
    const SVG svg = parsed(
        "<linearGradient id='a'><stop/><title/><stop offset='50%' stop-color='#123' stop-opacity='0.5'/>"
        "<stop offset='1' stop-color='url(#a)'/><stop stop-color='nonsense'/>"
        "<stop style='offset:10%;stop-color:red;stop-opacity:20%' stop-color='blue'/></linearGradient>");
    const Color black{ColorKeyword::black};
    EXPECT_THAT(svg.defs.linearGradients.at(0).stops,
                ElementsAre(GradientStop{0, black, 1}, GradientStop{0.5F, Color{Color::Hex{0x11, 0x22, 0x33}}, 0.5F},
                            GradientStop{1, black, 1}, GradientStop{0, black, 1},
                            GradientStop{0.1F, Color{ColorKeyword::red}, 0.2F}));
    EXPECT_THAT(errorIn("<linearGradient id='a'>" + repeated("<stop/>", 4097) + "</linearGradient>").what(),
                HasSubstr("more than 4096 stops"));
}

TEST(NestedSVG, HasDefinitionsAndSheetsOfItsOwn) {
    const SVG svg = parsed(
        "<linearGradient id='out'/><style>.a{}</style><svg width='2' height='3' id='n' class='k' fill='red'"
        " style='stroke:blue'><linearGradient id='in'/><style>.b{}</style><defs><g id='d'/></defs></svg>");
    const SVG& nested = *only<NestedSVG>(svg).svg;
    EXPECT_EQ(nested.width, 2);
    EXPECT_EQ(nested.defs.linearGradients.size(), 1U);
    EXPECT_EQ(nested.defs.linearGradients.at(0).id, "in");
    EXPECT_EQ(nested.styles.size(), 1U);
    EXPECT_EQ(nested.defs.elements.size(), 1U);
    EXPECT_EQ(nested.attributes.stroke, Fill(Color{ColorKeyword::blue}));
    EXPECT_EQ(nested.attributes.fill, Fill(Color{ColorKeyword::red}));
    const GraphicsElement& element = *svg.children.at(0);
    EXPECT_EQ(*element.id + *element.className, "nk");
    EXPECT_FALSE(element.attributes->stroke);
    EXPECT_EQ(element.style->stroke, Fill(Color{ColorKeyword::blue}));
    // The document has those inside too.
    EXPECT_EQ(svg.defs.linearGradients.size(), 2U);
    EXPECT_EQ(svg.styles.size(), 2U);
    EXPECT_EQ(svg.defs.elements.count("d"), 1U);
}

TEST(NestedSVG, StandsInDefinitionsToo) {
    const SVG svg = parsed(
        "<defs><svg id='a' width='2' height='2'><g id='b'/></svg></defs><clipPath id='c'>"
        "<svg width='2' height='2'><g id='d'/></svg></clipPath>");
    EXPECT_EQ(written(std::array{svg.defs.elements.at("a")}), "svg#a{g#b}");
    EXPECT_EQ(written(svg.defs.clipPaths.at(0).childElements), "svg{g#d}");
    EXPECT_EQ(failureIn("<defs><svg width='2' height='2'/></defs>"), "invalid");
}

TEST(Styles, AreFoundAnywhereInOrder) {
    const SVG svg = parsed("<style>.a{fill:red}</style><g><defs><style>.b{fill:red}</style></defs></g><style/>");
    ASSERT_EQ(svg.styles.size(), 3U);
    EXPECT_EQ(svg.styles[0].attributes.begin()->first.name, "a");
    EXPECT_EQ(svg.styles[1].attributes.begin()->first.name, "b");
    EXPECT_THAT(svg.styles[2].attributes, IsEmpty());
}

TEST(Styles, AFaultySheetIsReportedOnceAndSkipped) {
    const TemporaryFolder folder;
    const auto file = folder.write("a.svg",
                                   "<svg width='9' height='9'>\n <svg width='9' height='9'><style>.a{fill:nonsense}"
                                   "</style></svg><style>.b{}</style></svg>");
    ::testing::internal::CaptureStderr();
    const SVG svg = SVG::parse(file);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "[parsing error] a.svg <style> line: 2 column: 28 error: invalid attribute \"fill\": \"nonsense\"\n");
    EXPECT_EQ(svg.styles.size(), 1U);
    EXPECT_THAT(only<NestedSVG>(svg).svg->styles, IsEmpty());
}

TEST(FirstGraphicsElement, PrefersDefinitionsThenParents) {
    const std::string content =
        "<g><switch id='a'><g id='a'/></switch></g><svg width='5' height='5'><a id='b'/></svg><g id='b'/><g id='d'/>"
        "<defs><a id='d'/></defs><clipPath id='e'><g id='f'/></clipPath>";
    // With an element that refers to others, ids are kept in an index.
    for (const std::string user : {"", "<use xlink:href='#a'/>"}) {
        const SVG svg = parsed(content + user);
        EXPECT_EQ(svg.firstById.has_value(), !user.empty());
        const auto found = [&](std::string_view id) {
            const GraphicsElement* const element = svg.firstGraphicsElement(id);
            return element == nullptr ? "" : written(std::array{element});
        };
        EXPECT_EQ(found("a"), "switch#a{g#a}");
        EXPECT_EQ(found("b"), "a#b");
        EXPECT_EQ(found("d"), "a#d");
        EXPECT_EQ(found("f"), "");
        EXPECT_EQ(found("none"), "");
    }
}

TEST(FirstGraphicsElement, OutlivesAMove) {
    SVG first = parsed("<g id='a'/><use xlink:href='#a'/>");
    const SVG second = std::move(first);
    EXPECT_EQ(second.firstGraphicsElement("a"), second.children.at(0));
}

TEST(EntryPoints, ReadFilesAndNames) {
    const TemporaryFolder folder;
    const auto file = folder.write("a.svg", "<svg width='5' height='6'/>");
    EXPECT_EQ(SVG::parse(file).width, 5);
    EXPECT_EQ(SVG::parseNamed("a.svg", folder.path()).height, 6);
    EXPECT_EQ(errorOf([&] { static_cast<void>(SVG::parseNamed("b.svg", folder.path())); }).what(),
              "missing resource: b.svg in bundle: " + folder.path().string());
    EXPECT_EQ(errorOf([&] { static_cast<void>(SVG::parse(folder.path() / "c.svg")); }).kind(), Kind::other);
}

}  // namespace
}  // namespace sorvik::draw::dom
