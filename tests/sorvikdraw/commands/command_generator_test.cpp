#include "sorvikdraw/engine/command_generator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "layers_testing.h"

namespace sorvik::draw {
namespace {

using layer_tree::ClipShape;
using layer_tree::Color;
using layer_tree::Layer;
using layer_tree::Matrix;
using layer_tree::NoColor;
using testing::addShape;
using testing::addStroke;
using testing::blue;
using testing::commands;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Layers;
using testing::line;
using testing::lines;
using testing::red;
using testing::square;

constexpr auto setRed = "setFill rgba 1 0 0 1";
constexpr auto setBlue = "setFill rgba 0 0 1 1";
constexpr auto fillSquare = "fill M 0 0 L 2 0 L 2 2 L 0 2 Z nonzero";

TEST(CommandGenerator, LayersWithoutEffectsSaveNoState) {
    Layers drawing;
    addShape(*drawing.add(&drawing.root()), square(2), red);
    addShape(*drawing.add(drawing.add(&drawing.root())), square(2), blue);
    EXPECT_THAT(lines(drawing.tree), ElementsAre(setRed, fillSquare, setBlue, fillSquare));
}

TEST(CommandGenerator, NoTreeGivesNoCommands) { EXPECT_THAT(commands({}), IsEmpty()); }

TEST(CommandGenerator, OpacityCompositesTheGroupOnce) {
    Layers drawing;
    drawing.root().opacity = 0.5F;
    addShape(*drawing.add(&drawing.root()), square(2), red);
    EXPECT_THAT(lines(drawing.tree), ElementsAre("pushState", "setAlpha 0.5", "pushTransparencyLayer", setRed,
                                                 fillSquare, "popTransparencyLayer", "popState"));
}

TEST(CommandGenerator, EffectsComeInOneOrder) {
    Layers drawing;
    Layer& root = drawing.root();
    root.transform = {Matrix{1, 2, 3, 4, 5, 6}, layer_tree::Translate{7, 8}, layer_tree::Scale{9, 10},
                      layer_tree::Rotate{0.25F}};
    root.opacity = 0.5F;
    root.clip = std::vector<ClipShape>{{line(1), {}}, {line(1), Matrix{2, 0, 0, 1, 3, 4}}};
    root.clipRule = dom::FillRule::evenodd;
    root.mask = drawing.add();
    addShape(root, square(2), red);
    addShape(*root.mask, square(2), layer_tree::RGBA{1, 1, 1, 0.5F});
    addShape(root, square(2), blue);
    EXPECT_THAT(lines(drawing.tree),
                ElementsAre("pushState", "concatenate 1 2 3 4 5 6", "translate 7 8", "scale 9 10", "rotate 0.25",
                            "setAlpha 0.5", "pushTransparencyLayer", "setClip M 0 0 L 1 0 M 3 4 L 5 4 evenodd",
                            "pushTransparencyLayer", setRed, fillSquare, setBlue, fillSquare, "setBlend destinationIn",
                            "pushTransparencyLayer", "setBlend copy", "setFill rgba 0 0 0 0.5", fillSquare,
                            "popTransparencyLayer", "popTransparencyLayer", "popTransparencyLayer", "popState"));
}

TEST(CommandGenerator, EveryEffectAloneSavesState) {
    Layers masked;
    masked.root().mask = masked.add();
    EXPECT_THAT(lines(masked.tree),
                ElementsAre("pushState", "pushTransparencyLayer", "setBlend destinationIn", "pushTransparencyLayer",
                            "setBlend copy", "popTransparencyLayer", "popTransparencyLayer", "popState"));
    Layers clipped;
    clipped.root().clip = std::vector<ClipShape>{{line(1), {}}};
    EXPECT_THAT(lines(clipped.tree), ElementsAre("pushState", "setClip M 0 0 L 1 0 nonzero", "popState"));
    Layers moved;
    moved.root().transform = {layer_tree::Translate{1, 2}};
    EXPECT_THAT(lines(moved.tree), ElementsAre("pushState", "translate 1 2", "popState"));
    Layers clippedByNothing;
    clippedByNothing.root().clip = std::vector<ClipShape>{};
    EXPECT_THAT(lines(clippedByNothing.tree), IsEmpty());
}

TEST(CommandGenerator, ChildrenStandWhereTheyStandAmongTheContents) {
    Layers drawing;
    Layer& root = drawing.root();
    addShape(root, square(2), red);
    addShape(*drawing.add(&root), square(2), blue);
    addShape(root, square(2), red);
    EXPECT_THAT(lines(drawing.tree), ElementsAre(setRed, fillSquare, setBlue, fillSquare, setRed, fillSquare));
}

TEST(CommandGenerator, FillComesBeforeStroke) {
    Layers drawing;
    Layer::ShapeContents& shape = addShape(drawing.root(), square(2), red);
    shape.fill.rule = dom::FillRule::evenodd;
    shape.stroke = {Color(blue), 3, dom::LineCap::round, dom::LineJoin::bevel, 5};
    EXPECT_THAT(lines(drawing.tree), ElementsAre(setRed, "fill M 0 0 L 2 0 L 2 2 L 0 2 Z evenodd", "setLine 3",
                                                 "setLineCap round", "setLineJoin bevel", "setLineMiter 5",
                                                 "setStroke rgba 0 0 1 1", "stroke M 0 0 L 2 0 L 2 2 L 0 2 Z"));
}

TEST(CommandGenerator, NoColorDrawsNothing) {
    Layers drawing;
    addShape(drawing.root(), square(2), Color(NoColor{}));
    EXPECT_THAT(lines(drawing.tree), IsEmpty());
}

TEST(CommandGenerator, EqualShapesBecomeOnePath) {
    Layers drawing;
    addShape(drawing.root(), square(2), red).stroke.color = Color(blue);
    addShape(drawing.root(), line(7), red);
    addShape(drawing.root(), square(2), blue);
    drawing.root().clip = std::vector<ClipShape>{{square(2), {}}};
    std::vector<const CGPath*> paths;
    for (const CGCommand& command : commands(drawing.tree)) {
        if (const auto* fill = std::get_if<CGCommand::Fill>(&command.value)) {
            paths.push_back(fill->path.get());
        } else if (const auto* stroke = std::get_if<CGCommand::Stroke>(&command.value)) {
            paths.push_back(stroke->path.get());
        } else if (const auto* clip = std::get_if<CGCommand::SetClip>(&command.value)) {
            paths.push_back(clip->path.get());
        }
    }
    ASSERT_EQ(paths.size(), 5U);
    EXPECT_THAT(paths, ElementsAre(paths[0], paths[0], paths[0], ::testing::Ne(paths[0]), paths[0]));
}

// MARK: gradients

layer_tree::Gradient redToBlue() { return {{{0, red, 1}, {1, blue, 0.5F}}}; }

layer_tree::Shape wide() { return {layer_tree::Shape::Rectangle{{{10, 20}, {40, 8}}, {}}}; }
constexpr auto widePath = " M 10 20 L 50 20 L 50 28 L 10 28 Z";
constexpr auto redToBlueStops = " 0 rgba 1 0 0 1 1 rgba 0 0 1 0.5";

TEST(CommandGenerator, GradientsAreDrawnInsideTheClippedShape) {
    Layers drawing;
    auto gradient = std::make_shared<layer_tree::LinearGradient>();
    gradient->gradient = redToBlue();
    gradient->start = {0, 0.5F};
    gradient->end = {1, 2};
    gradient->transform = {layer_tree::Scale{2, 3}};
    Layer::ShapeContents& shape = addShape(drawing.root(), wide(), gradient);
    shape.fill.opacity = 0.25F;
    shape.fill.rule = dom::FillRule::evenodd;
    shape.stroke.color = gradient;
    const std::string drawn = std::string("drawLinearGradient 10 24 50 36") + redToBlueStops;
    EXPECT_THAT(
        lines(drawing.tree),
        ElementsAre("pushState", std::string("setClip") + widePath + " evenodd", "setAlpha 0.25", "scale 2 3", drawn,
                    "popState", "pushState", "setLine 1", "setLineCap butt", "setLineJoin miter", "setLineMiter 4",
                    std::string("clipStrokeOutline") + widePath, "scale 2 3", drawn, "popState"));
}

TEST(CommandGenerator, RadiiOfABoundingBoxFollowItsLongerSide) {
    Layers drawing;
    auto gradient = std::make_shared<layer_tree::RadialGradient>();
    gradient->gradient = redToBlue();
    gradient->center = {0.5F, 0.25F};
    gradient->radius = 0.125F;
    gradient->endCenter = {1, 1};
    gradient->endRadius = 0.5F;
    addShape(drawing.root(), wide(), gradient);
    auto inUserSpace = std::make_shared<layer_tree::RadialGradient>(*gradient);
    inUserSpace->units = layer_tree::Units::userSpaceOnUse;
    addShape(drawing.root(), wide(), inUserSpace);
    const std::string clip = std::string("setClip") + widePath + " nonzero";
    EXPECT_THAT(lines(drawing.tree),
                ElementsAre("pushState", clip, std::string("drawRadialGradient 30 22 5 50 28 20") + redToBlueStops,
                            "popState", "pushState", clip,
                            std::string("drawRadialGradient 0.5 0.25 0.125 1 1 0.5") + redToBlueStops, "popState"));
}

TEST(CommandGenerator, AnEmptyPathHasAnEmptyBoundingBox) {
    Layers drawing;
    auto gradient = std::make_shared<layer_tree::LinearGradient>();
    gradient->gradient = redToBlue();
    gradient->end = {1, 1};
    addShape(drawing.root(), {layer_tree::Path{}}, gradient);
    EXPECT_THAT(lines(drawing.tree), ::testing::Contains(std::string("drawLinearGradient 0 0 0 0") + redToBlueStops));
}

// MARK: patterns

struct PatternTest : ::testing::Test {
    PatternTest() {
        pattern->frame = {{0, 0}, {4, 5}};
        pattern->contents = {drawing.add()};
        addShape(*pattern->contents.front(), square(2), red);
    }

    Layers drawing;
    std::shared_ptr<layer_tree::Pattern> pattern = std::make_shared<layer_tree::Pattern>();
};

TEST_F(PatternTest, IsMadeOnceAndSetsWhatItNeedsByItself) {
    addShape(drawing.root(), square(2), red);
    addShape(drawing.root(), square(2), pattern).stroke.color = Color(blue);
    addShape(drawing.root(), square(3), pattern);
    const CGCommands list = commands(drawing.tree);
    EXPECT_THAT(
        lines(list),
        ElementsAre(setRed, fillSquare, std::string("setFillPattern 0 0 4 5 { ") + setRed + " ; " + fillSquare + " ; }",
                    fillSquare, "setLine 1", "setLineCap butt", "setLineJoin miter", "setLineMiter 4",
                    "setStroke rgba 0 0 1 1", "stroke M 0 0 L 2 0 L 2 2 L 0 2 Z",
                    "fill M 0 0 L 3 0 L 3 3 L 0 3 Z nonzero"));
}

TEST_F(PatternTest, InAMaskIsAnother) {
    addShape(drawing.root(), square(2), pattern);
    drawing.root().mask = drawing.add();
    addShape(*drawing.root().mask, square(2), pattern);
    EXPECT_THAT(lines(drawing.tree),
                ::testing::Contains(std::string("setFillPattern 0 0 4 5 { setFill rgba 0 0 0 0.2126 ; ") + fillSquare +
                                    " ; }"));
}

// MARK: masks

TEST(CommandGenerator, MasksPaintWithLuminanceAllTheWayDown) {
    Layers drawing;
    Layer* mask = drawing.root().mask = drawing.add();
    auto gradient = std::make_shared<layer_tree::LinearGradient>();
    gradient->gradient = redToBlue();
    gradient->units = layer_tree::Units::userSpaceOnUse;
    addShape(*drawing.add(mask), line(1), gradient);
    addStroke(*mask, line(1), Color(layer_tree::Gray{0, 1}));
    EXPECT_THAT(lines(drawing.tree), ::testing::IsSupersetOf({"drawLinearGradient 0 0 0 0 0 rgba 0 0 0 0.2126 1 rgba 0 "
                                                              "0 0 0.0361",
                                                              "setStroke rgba 0 0 0 0"}));
}

// MARK: pictures

void addImage(Layer& layer, const layer_tree::Bitmap& bitmap, std::optional<float> width, std::optional<float> height) {
    auto image = std::make_unique<layer_tree::Image>();
    *image = {bitmap, {3, 4}, width, height};
    layer.contents.emplace_back(std::move(image));
}

TEST(CommandGenerator, PicturesTakeTheSizeThatIsWrittenOrTheirOwn) {
    Layers drawing;
    const layer_tree::Bitmap picture = testing::png(6, 5);
    addImage(drawing.root(), picture, {}, {});
    addImage(drawing.root(), picture, 12.0F, {});
    addImage(drawing.root(), testing::jpeg(70, 80), {}, 8.0F);
    EXPECT_THAT(lines(drawing.tree), ElementsAre("draw 6 5 3 4 6 5", "draw 6 5 3 4 12 5", "draw 70 80 3 4 70 8"));
}

TEST(CommandGenerator, PicturesWithoutSizeOrContentAreLeftOut) {
    using Format = layer_tree::Bitmap::Format;
    Layers drawing;
    addImage(drawing.root(), testing::png(6, 5), 0.0F, 5.0F);
    addImage(drawing.root(), testing::png(6, 5), 5.0F, -1.0F);
    addImage(drawing.root(), {Format::jpeg, testing::png(6, 5).bytes}, {}, {});
    addImage(drawing.root(), {Format::png, testing::jpeg(6, 5).bytes}, {}, {});
    addImage(drawing.root(), testing::bitmap(Format::png, ""), {}, {});
    addImage(drawing.root(), testing::bitmap(Format::jpeg, "\xFF\xD8\xFF"), {}, {});
    addImage(drawing.root(), {}, {}, {});
    EXPECT_THAT(lines(drawing.tree), IsEmpty());
}

// MARK: what is not supported

struct Filtered : ::testing::Test {
    Filtered() {
        for (Layer* layer : {drawing.add(&drawing.root()), drawing.add(&drawing.root())}) {
            layer->filters = std::vector<dom::Filter::Effect>{{1.5F}};
            layer->opacity = 0.5F;
            addShape(*drawing.add(layer), square(2), red);
        }
        addShape(drawing.root(), square(2), blue);
    }

    Layers drawing;
};

TEST_F(Filtered, IsHiddenIfWanted) {
    ::testing::internal::CaptureStdout();
    EXPECT_THAT(lines(drawing.tree, {.hideUnsupportedFilters = true}), ElementsAre(setBlue, fillSquare));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(Filtered, IsDrawnWithoutAfterOneWarning) {
    constexpr auto warning =
        "Warning: <feGaussianBlur> is not supported. Elements with this filter can be hidden with ";
    for (const auto& [caller, spelling] :
         {std::pair(layer_tree::Caller::tool, "[--hideUnsupportedFilters]\n"),
          std::pair(layer_tree::Caller::library, "NSImage(svgNamed:, options: .hideUnsupportedFilters)\n")}) {
        ::testing::internal::CaptureStdout();
        EXPECT_EQ(commands(drawing.tree, {.caller = caller}).size(), 16U);
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), std::string(warning) + spelling);
    }
}

struct WithoutTransparentStops : CGProvider {
    static constexpr bool supportsTransparentStops() { return false; }
};

TEST(CommandGenerator, WarnsOnceOfTransparentStopsWhereTheyCannotBeDrawn) {
    Layers drawing;
    auto opaque = std::make_shared<layer_tree::LinearGradient>();
    opaque->gradient = {{{0, red, 1}, {1, blue, 1}}};
    auto transparent = std::make_shared<layer_tree::RadialGradient>();
    transparent->gradient = redToBlue();
    const auto warnings = [&drawing](auto provider) {
        ::testing::internal::CaptureStdout();
        (void)layer_tree::CommandGenerator(std::move(provider)).makeCommands(drawing.tree);
        return ::testing::internal::GetCapturedStdout();
    };
    addShape(drawing.root(), square(2), opaque);
    EXPECT_EQ(warnings(WithoutTransparentStops{}), "");
    addShape(drawing.root(), square(2), transparent);
    addShape(drawing.root(), square(3), transparent);
    EXPECT_EQ(warnings(WithoutTransparentStops{}), "Warning: PDF does not support gradients with stop-opacity\n");
    EXPECT_EQ(warnings(CGProvider{}), "");
}

}  // namespace
}  // namespace sorvik::draw
