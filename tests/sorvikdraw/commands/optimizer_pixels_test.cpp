#include <gtest/gtest.h>

#include <array>
#include <random>

#include "sorvikdraw/engine/cg_shapes.h"
#include "sorvikdraw/engine/command_optimizer.h"
#include "sorvikdraw/engine/command_printing.h"
#include "sorvikdraw/engine/svg.h"

namespace sorvik::draw {
namespace {

constexpr SVG::Size size{24, 24};
constexpr int levels = 4;  // saved states and layers inside each other

CGTypes::Path rectangle(float x, float y, float width, float height) {
    return makePath({layer_tree::Shape::Rectangle{{{x, y}, {width, height}}, {}}});
}

// A list that is well formed and sets what it needs rarely anew, so that much of it repeats what is in force.
class RandomCommands {
public:
    explicit RandomCommands(unsigned seed) : random_(seed) {}

    CGCommands make(int count) {
        for (int i = 0; i < count; ++i) {
            (this->*actions_[below(actions_.size())])();
        }
        while (!open_.empty()) {
            close();
        }
        return std::move(list_);
    }

private:
    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }
    float coordinate() { return static_cast<float>(below(20)); }
    CGColor color() { return std::array<CGColor, 3>{{{1, 0, 0, 1}, {0, 0.5F, 1, 0.5F}, {0, 0, 0, 0}}}[below(3)]; }
    CGTypes::Path path() { return rectangle(coordinate(), coordinate(), 4 + coordinate(), 4 + coordinate()); }
    void add(CGCommand command) { list_.push_back(std::move(command)); }

    void setFill() { add({CGCommand::SetFill{color()}}); }
    void setFillPattern() { add({CGCommand::SetFillPattern{patterns_[below(2)]}}); }
    void setStroke() { add({CGCommand::SetStroke{color()}}); }
    void setLine() { add({CGCommand::SetLine{static_cast<float>(1 + below(2) * 3)}}); }
    void setLineCap() { add({CGCommand::SetLineCap{static_cast<dom::LineCap>(below(3))}}); }
    void setLineJoin() { add({CGCommand::SetLineJoin{static_cast<dom::LineJoin>(below(3))}}); }
    void setLineMiter() { add({CGCommand::SetLineMiter{static_cast<float>(1 + below(2) * 3)}}); }
    void setAlpha() { add({CGCommand::SetAlpha{below(2) == 0 ? 1.0F : 0.5F}}); }
    void setBlend() { add({CGCommand::SetBlend{static_cast<BlendMode>(below(3))}}); }
    void fill() { add({CGCommand::Fill{path(), dom::FillRule::nonzero}}); }
    void stroke() { add({CGCommand::Stroke{path()}}); }
    void clip() {
        if (!open_.empty()) {
            add({CGCommand::SetClip{path(), dom::FillRule::nonzero}});
        }
    }
    void move() { add({CGCommand::Translate{coordinate() / 4, -coordinate() / 4}}); }
    void save() {
        if (open_.size() < levels) {
            add({CGCommand::PushState{}});
            open_.push_back({CGCommand::PopState{}});
        }
    }
    void beginLayer() {
        if (open_.size() < levels) {
            add({CGCommand::PushTransparencyLayer{}});
            open_.push_back({CGCommand::PopTransparencyLayer{}});
        }
    }
    void close() {
        if (!open_.empty()) {
            add(open_.back());
            open_.pop_back();
        }
    }

    using Action = void (RandomCommands::*)();
    static constexpr std::array<Action, 20> actions_{
        &RandomCommands::setFill,     &RandomCommands::setFill,      &RandomCommands::setFillPattern,
        &RandomCommands::setStroke,   &RandomCommands::setLine,      &RandomCommands::setLineCap,
        &RandomCommands::setLineJoin, &RandomCommands::setLineMiter, &RandomCommands::setAlpha,
        &RandomCommands::setBlend,    &RandomCommands::fill,         &RandomCommands::fill,
        &RandomCommands::fill,        &RandomCommands::stroke,       &RandomCommands::stroke,
        &RandomCommands::clip,        &RandomCommands::move,         &RandomCommands::save,
        &RandomCommands::beginLayer,  &RandomCommands::close};

    static CGTypes::Pattern tile(float side, CGColor color) {
        return std::make_shared<CGTransformingPattern>(CGTransformingPattern{
            {{0, 0}, {side, side}},
            {{CGCommand::SetFill{color}}, {CGCommand::Fill{rectangle(0, 0, side / 2, side), dom::FillRule::nonzero}}}});
    }

    std::mt19937 random_;
    std::array<CGTypes::Pattern, 2> patterns_{tile(3, {0, 1, 0, 1}), tile(5, {1, 0, 1, 0.5F})};
    CGCommands list_;
    CGCommands open_;
};

TEST(OptimizerPixels, OptimizedListsDrawTheSame) {
    constexpr unsigned lists = 200;
    constexpr int commands = 60;
    const std::vector<std::byte> blank = SVG(size, {}).pngData();
    std::size_t dropped = 0;
    std::size_t drawn = 0;
    for (unsigned seed = 0; seed < lists; ++seed) {
        const CGCommands raw = RandomCommands(seed).make(commands);
        const CGCommands fewer = layer_tree::optimized<CGTypes>(raw);
        dropped += raw.size() - fewer.size();
        const std::vector<std::byte> picture = SVG(size, raw).pngData();
        drawn += static_cast<std::size_t>(picture != blank);
        ASSERT_TRUE(picture == SVG(size, fewer).pngData()) << "seed " << seed << '\n' << print(raw);
    }
    EXPECT_GT(dropped, std::size_t{lists});
    EXPECT_GT(drawn, lists / 2);
}

}  // namespace
}  // namespace sorvik::draw
