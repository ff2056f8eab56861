#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sorvikdraw/dom/cascade.h"
#include "sorvikdraw/engine/definitions.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// What an element draws with, and hands on to the elements inside it. Dashes are not drawn and so not kept.
struct State {
    /// Of a drawing, a pattern's child or a mask, which inherit nothing.
    State();
    /// Of an element inside. All is inherited but `opacity`.
    [[nodiscard]] State of(const dom::Cascade::Attributes& attributes, Definitions& definitions) const;

    static constexpr float strokeLineMiterLimit = 4;

    float opacity = 1;
    dom::DisplayMode display = dom::DisplayMode::inlined;
    dom::Color color{dom::ColorKeyword::black};
    StrokePaint stroke = dom::Color{};
    float strokeWidth = 1;
    float strokeOpacity = 1;
    dom::LineCap strokeLineCap = dom::LineCap::butt;
    dom::LineJoin strokeLineJoin = dom::LineJoin::miter;
    FillPaint fill = dom::Color{dom::ColorKeyword::black};
    float fillOpacity = 1;
    dom::FillRule fillRule = dom::FillRule::nonzero;
    Shared<std::vector<dom::Filter::Effect>> filters;
    std::shared_ptr<const std::string> fontFamily;  ///< never null
    float fontSize = 12;
    dom::TextAnchor textAnchor = dom::TextAnchor::start;
};

[[nodiscard]] FillAttributes makeFillAttributes(const State& state);
[[nodiscard]] StrokeAttributes makeStrokeAttributes(const State& state);
/// Text is filled with a colour or not at all.
[[nodiscard]] TextAttributes makeTextAttributes(const State& state);

}  // namespace sorvik::draw::layer_tree
