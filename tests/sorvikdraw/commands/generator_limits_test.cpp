#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "layers_testing.h"
#include "sorvikdraw/engine/command_list.h"

namespace sorvik::draw {
namespace {

using layer_tree::Layer;
using testing::addShape;
using testing::commands;
using testing::Layers;
using testing::line;
using testing::red;
using testing::square;

constexpr int doublings = 60;

layer_tree::Tree manyUses() {
    Layers drawing;
    Layer* layer = drawing.add();
    addShape(*layer, square(1), red);
    for (int i = 0; i < doublings; ++i) {
        layer = drawing.twice(layer);
    }
    drawing.root().contents.emplace_back(layer);
    return std::move(drawing.tree);
}

layer_tree::Tree manyUsesOfNothing() {
    Layers drawing;
    Layer* layer = drawing.add();
    for (int i = 0; i < doublings; ++i) {
        layer = drawing.twice(layer);
    }
    drawing.root().contents.emplace_back(layer);
    return std::move(drawing.tree);
}

layer_tree::Tree masksInMasks() {
    Layers drawing;
    Layer* mask = drawing.add();
    for (int i = 0; i < doublings; ++i) {
        Layer* outer = drawing.add();
        drawing.add(outer)->mask = mask;
        drawing.add(outer)->mask = mask;
        mask = outer;
    }
    drawing.root().mask = mask;
    return std::move(drawing.tree);
}

layer_tree::Shape longPath() {
    const layer_tree::PathSegment segment{layer_tree::PathSegment::Line{{1, 1}}};
    return {layer_tree::Path{std::vector(limits::pathSegments, segment)}};
}

layer_tree::Tree usesOfALongPath() {
    Layers drawing;
    Layer* layer = drawing.add();
    addShape(*layer, longPath(), red);
    for (int i = 0; i < 1000; ++i) {
        drawing.root().contents.emplace_back(layer);
    }
    return std::move(drawing.tree);
}

layer_tree::Tree clippedByLongPaths() {
    Layers drawing;
    const layer_tree::Shape path = longPath();
    for (int i = 0; i < 1000; ++i) {
        drawing.add(&drawing.root())->clip = std::vector<layer_tree::ClipShape>{{path, {}}, {path, {}}};
    }
    return std::move(drawing.tree);
}

layer_tree::Tree hugePictures() {
    Layers drawing;
    for (int i = 0; i < 3; ++i) {
        auto image = std::make_unique<layer_tree::Image>();
        image->bitmap = testing::jpeg(5000, 5000);
        drawing.root().contents.emplace_back(std::move(image));
    }
    return std::move(drawing.tree);
}

layer_tree::Tree longPicture() {
    Layers drawing;
    auto image = std::make_unique<layer_tree::Image>();
    image->bitmap = testing::png(limits::side + 1, 1);
    drawing.root().contents.emplace_back(std::move(image));
    return std::move(drawing.tree);
}

TEST(GeneratorLimits, WorkThatGrowsWithoutEndIsRefused) {
    const struct {
        const char* name;
        layer_tree::Tree (*make)();
        const char* what;
    } cases[] = {
        {"uses", manyUses, "the drawing takes too many steps"},
        {"uses of nothing", manyUsesOfNothing, "the drawing repeats its parts too often"},
        {"masks", masksInMasks, "the drawing takes too many steps"},
        {"uses of a long path", usesOfALongPath, "the drawing repeats its parts too often"},
        {"long clips", clippedByLongPaths, "the drawing has too many points"},
        {"huge pictures", hugePictures, "the pictures in the document are too large"},
        {"a long picture", longPicture, "the pictures in the document are too large"},
    };
    for (const auto& [name, make, what] : cases) {
        SCOPED_TRACE(name);
        EXPECT_THAT([make = make] { (void)commands(make()); },
                    ::testing::ThrowsMessage<LimitError>(::testing::StrEq(what)));
    }
}

TEST(GeneratorLimits, ALargePictureInManyPlacesCountsOnce) {
    Layers drawing;
    Layer* layer = drawing.add();
    auto image = std::make_unique<layer_tree::Image>();
    image->bitmap = testing::jpeg(8000, 7000);
    layer->contents.emplace_back(std::move(image));
    drawing.root().contents.emplace_back(drawing.twice(layer));
    EXPECT_EQ(commands(drawing.tree).size(), 2U);
}

// Each pattern is drawn with the one before it, in two places.
layer_tree::Tree patternsInPatterns() {
    Layers drawing;
    layer_tree::Fill fill = red;
    for (std::size_t i = 0; i < limits::expansionDepth; ++i) {
        auto pattern = std::make_shared<layer_tree::Pattern>();
        pattern->frame = {{0, 0}, {1, 1}};
        pattern->contents = {drawing.add()};
        addShape(*pattern->contents.front(), square(1), fill);
        addShape(*pattern->contents.front(), line(1), red);
        addShape(*pattern->contents.front(), square(1), fill);
        fill = pattern;
    }
    addShape(drawing.root(), square(1), fill);
    return std::move(drawing.tree);
}

TEST(GeneratorLimits, PatternsInPatternsAreMadeAndComparedOnceEach) {
    const CGCommands first = commands(patternsInPatterns());
    const CGCommands second = commands(patternsInPatterns());
    EXPECT_EQ(first.size(), 2U);
    EXPECT_TRUE(equal(first, second));
    EXPECT_EQ(hash(first), hash(second));
    EXPECT_LT(memoryUse(first, SIZE_MAX), 100'000U);
}

TEST(GeneratorLimits, DeepLayersTakeNoStack) {
    Layers drawing;
    Layer* layer = &drawing.root();
    for (int i = 0; i < 300'000; ++i) {
        layer = drawing.add(layer);
    }
    addShape(*layer, square(1), red);
    EXPECT_EQ(commands(drawing.tree).size(), 2U);
}

}  // namespace
}  // namespace sorvik::draw
