#include "sorvikdraw/engine/svg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "layers_testing.h"
#include "sorvikdraw/engine/svg_cache.h"

namespace sorvik::draw {
namespace {

using testing::addShape;
using ::testing::ElementsAre;
using testing::lines;

SVG drawing(float side) {
    testing::Layers layers;
    addShape(layers.root(), testing::square(side), testing::red);
    CGCommands list = testing::commands(layers.tree);
    return {{10, 20}, {list.back()}};
}

const std::string fill = "fill M 0 0 L 2 0 L 2 2 L 0 2 Z nonzero";

TEST(SVGGeometry, ChangesGoAheadOfTheCommands) {
    const SVG svg = drawing(2);
    const struct {
        const char* name;
        SVG result;
        SVG::Size size;
        const char* command;
    } cases[] = {
        {"sized", svg.sized({30, 10}), {30, 10}, "scale 3 0.5"},
        {"scaled", svg.scaled(2), {20, 40}, "scale 2 2"},
        {"scaled by axis", svg.scaled(2, 0.5), {20, 10}, "scale 2 0.5"},
        {"translated", svg.translated(3, -4), {10, 20}, "translate 3 -4"},
        {"expanded", svg.expanded({.top = 1, .left = 2, .bottom = 3, .right = 4}), {16, 24}, "translate 2 1"},
        {"expanded on all sides", svg.expanded(-1), {8, 18}, "translate -1 -1"},
    };
    for (const auto& [name, result, size, command] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(result.size(), size);
        EXPECT_THAT(lines(result.commands()), ElementsAre(command, fill));
    }
    EXPECT_EQ(svg, drawing(2));
    EXPECT_EQ(svg.sized({10, 20}), svg);
}

TEST(SVGGeometry, ASideOfNothingIsNotScaled) {
    const SVG svg({0, 4}, {});
    EXPECT_THAT(lines(svg.sized({5, 8}).commands()), ElementsAre("scale 1 2"));
    EXPECT_EQ(svg.sized({5, 8}).size(), (SVG::Size{5, 8}));
}

TEST(SVGValue, ComparesByWhatIsDrawn) {
    EXPECT_EQ(drawing(2), drawing(2));
    EXPECT_EQ(std::hash<SVG>{}(drawing(2)), std::hash<SVG>{}(drawing(2)));
    EXPECT_NE(drawing(2), drawing(3));
    EXPECT_NE(drawing(2).hash(), drawing(3).hash());
    EXPECT_NE(drawing(2), drawing(2).translated(0, 0));
    EXPECT_NE(SVG({1, 2}, {}), SVG({2, 1}, {}));
    EXPECT_NE(SVG({1, 2}, {}).hash(), SVG({2, 1}, {}).hash());
}

// MARK: cache

SVG costing(std::size_t commands) { return {{1, 1}, CGCommands(commands, CGCommand{CGCommand::PushState{}})}; }

TEST(SVGGCache, KeepsTheLastUsedUpToItsLimit) {
    SVGGCache cache(100'000);
    cache.setSVG(costing(1000), "a");
    cache.setSVG(costing(1001), "b");
    ASSERT_TRUE(cache.svg("a"));
    cache.setSVG(costing(1002), "c");
    EXPECT_EQ(cache.svg("a"), costing(1000));
    EXPECT_FALSE(cache.svg("b"));
    EXPECT_EQ(cache.svg("c"), costing(1002));
    cache.setSVG(costing(1003), "a");
    EXPECT_EQ(cache.svg("a"), costing(1003));
    EXPECT_TRUE(cache.svg("c"));
    cache.setTotalCostLimit(50'000);
    EXPECT_FALSE(cache.svg("a"));
    EXPECT_TRUE(cache.svg("c"));
}

TEST(SVGGCache, WhatAloneIsTooMuchIsNotKept) {
    SVGGCache cache(100'000);
    cache.setSVG(costing(1), "small");
    cache.setSVG(costing(1), "large");
    cache.setSVG(costing(10'000), "large");
    EXPECT_FALSE(cache.svg("large"));
    EXPECT_TRUE(cache.svg("small"));
    testing::Layers layers;
    const std::vector<layer_tree::PathSegment> segments(100'000, {layer_tree::PathSegment::Line{{1, 1}}});
    addShape(layers.root(), {layer_tree::Path{segments}}, testing::red);
    cache.setSVG({{1, 1}, testing::commands(layers.tree)}, "path");
    EXPECT_FALSE(cache.svg("path"));
}

TEST(SVGGCache, OptionsMakeADrawingOfTheirOwn) {
    SVGGCache cache;
    cache.setSVG(costing(1), "a");
    EXPECT_FALSE(cache.svg("a", SVG::hideUnsupportedFilters));
}

TEST(SVGGCache, ServesManyThreads) {
    SVGGCache cache(20'000);
    std::vector<std::jthread> threads;
    for (std::size_t thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&cache, thread] {
            for (std::size_t i = 0; i < 500; ++i) {
                const std::size_t number = (i + thread) % 5;
                cache.setSVG(costing(number * 50), std::to_string(number));
                const auto found = cache.svg(std::to_string(number));
                EXPECT_TRUE(!found || found->commands().size() == number * 50);
            }
        });
    }
}

}  // namespace
}  // namespace sorvik::draw
