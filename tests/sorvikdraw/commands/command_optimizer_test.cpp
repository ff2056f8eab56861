#include "sorvikdraw/engine/command_optimizer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "layers_testing.h"

namespace sorvik::draw {
namespace {

using layer_tree::optimized;
using layer_tree::OptimizerOptions;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::lines;

const CGColor red{1, 0, 0, 1};
const CGColor blue{0, 0, 1, 1};
const CGCommand setRed{CGCommand::SetFill{red}};
const CGCommand setBlue{CGCommand::SetFill{blue}};
const CGCommand setRedLine{CGCommand::SetStroke{red}};
const CGCommand push{CGCommand::PushState{}};
const CGCommand pop{CGCommand::PopState{}};
const CGCommand begin{CGCommand::PushTransparencyLayer{}};
const CGCommand end{CGCommand::PopTransparencyLayer{}};
const CGCommand half{CGCommand::SetAlpha{0.5F}};
const CGCommand copy{CGCommand::SetBlend{BlendMode::copy}};
const CGCommand move{CGCommand::Translate{1, 2}};

CGCommand setPattern(const CGTypes::Pattern& pattern) { return {CGCommand::SetFillPattern{pattern}}; }

const CGTypes::Pattern tile = std::make_shared<CGTransformingPattern>();
const CGTypes::Pattern otherTile = std::make_shared<CGTransformingPattern>();

CGCommands lineSettings(float width, dom::LineCap cap, dom::LineJoin join, float limit) {
    return {{CGCommand::SetLine{width}},
            {CGCommand::SetLineCap{cap}},
            {CGCommand::SetLineJoin{join}},
            {CGCommand::SetLineMiter{limit}}};
}

TEST(CommandOptimizer, DropsWhatIsInForceAndNothingElse) {
    const struct {
        const char* name;
        CGCommands list, expected;
    } cases[] = {
        {"the same colour", {setRed, setRed, setBlue, setRed}, {setRed, setBlue, setRed}},
        {"a fill is no stroke", {setRed, setRedLine, setRed, setRedLine}, {setRed, setRedLine}},
        {"a pattern replaces a colour",
         {setRed, setPattern(tile), setPattern(tile), setRed},
         {setRed, setPattern(tile), setRed}},
        {"another pattern", {setPattern(tile), setPattern(otherTile)}, {setPattern(tile), setPattern(otherTile)}},
        {"a pattern elsewhere", {setPattern(tile), move, setPattern(tile)}, {setPattern(tile), move, setPattern(tile)}},
        {"a colour elsewhere", {setRed, move, setRed}, {setRed, move}},
        {"saved state goes on", {setRed, push, setRed, pop, setRed}, {setRed, push, pop}},
        {"restored state comes back", {setRed, push, setBlue, pop, setRed}, {setRed, push, setBlue, pop}},
        {"what was set inside is gone", {push, setRed, pop, setRed}, {push, setRed, pop, setRed}},
        {"a pattern moved inside stands outside",
         {setPattern(tile), push, move, pop, setPattern(tile)},
         {setPattern(tile), push, move, pop}},
        {"a layer takes alpha and blend mode away",
         {half, copy, begin, half, copy, half, end, half, copy},
         {half, copy, begin, half, copy, end}},
        {"a layer takes paint along", {setRed, begin, setRed, setBlue, end, setRed}, {setRed, begin, setBlue, end}},
        {"too many pops leave nothing known", {setRed, pop, setRed}, {setRed, pop, setRed}},
    };
    for (const auto& [name, list, expected] : cases) {
        SCOPED_TRACE(name);
        EXPECT_THAT(lines(optimized<CGTypes>(list)), ElementsAreArray(lines(expected)));
    }
}

TEST(CommandOptimizer, LineSettingsAreLookedAtOneByOne) {
    using enum dom::LineCap;
    CGCommands list = lineSettings(1, butt, dom::LineJoin::miter, 4);
    const CGCommands changed = lineSettings(2, butt, dom::LineJoin::bevel, 4);
    list.insert(list.end(), changed.begin(), changed.end());
    EXPECT_THAT(lines(optimized<CGTypes>(list)), ElementsAre("setLine 1", "setLineCap butt", "setLineJoin miter",
                                                             "setLineMiter 4", "setLine 2", "setLineJoin bevel"));
}

TEST(CommandOptimizer, EachOptionLooksAtItsKind) {
    CGCommands list{setRed, setRedLine, half, copy};
    const CGCommands line = lineSettings(1, dom::LineCap::butt, dom::LineJoin::miter, 4);
    list.insert(list.end(), line.begin(), line.end());
    const CGCommands once = list;
    list.insert(list.end(), once.begin(), once.end());
    const auto dropped = [&list](OptimizerOptions options) {
        return list.size() - optimized<CGTypes>(list, options).size();
    };
    EXPECT_EQ(dropped(OptimizerOptions::none), 0U);
    EXPECT_EQ(dropped(OptimizerOptions::paints), 2U);
    EXPECT_EQ(dropped(OptimizerOptions::lines), 4U);
    EXPECT_EQ(dropped(OptimizerOptions::compositing), 2U);
    EXPECT_EQ(dropped(OptimizerOptions::all), 8U);
}

}  // namespace
}  // namespace sorvik::draw
