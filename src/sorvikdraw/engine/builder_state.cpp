#include "sorvikdraw/engine/builder_state.h"

#include <variant>

#include "sorvikdraw/engine/color_resolution.h"

namespace sorvik::draw::layer_tree {
namespace {

template <typename Value, typename Attribute>
void take(Value& value, const Attribute& attribute) {
    if (attribute) {
        value = *attribute;
    }
}

// Colours get the current colour and their opacity; what a reference led to stays as it is.
template <typename Result>
struct Painting {
    const dom::Color& current;
    float opacity;

    Result operator()(const dom::Color& color) const { return faded(resolved(color, current), opacity); }
    template <typename Reference>
    Result operator()(const Reference& reference) const {
        return reference;
    }
};

}  // namespace

State::State() {
    static const auto helvetica = std::make_shared<const std::string>("Helvetica");
    fontFamily = helvetica;
}

State::State(const State& outer, const dom::Cascade::Attributes& attributes, Definitions& definitions) : State(outer) {
    opacity = attributes->opacity.value_or(1);
    take(display, attributes->display);
    take(color, attributes->color);
    take(strokeWidth, attributes->strokeWidth);
    take(strokeOpacity, attributes->strokeOpacity);
    take(strokeLineCap, attributes->strokeLineCap);
    take(strokeLineJoin, attributes->strokeLineJoin);
    take(fillOpacity, attributes->fillOpacity);
    take(fillRule, attributes->fillRule);
    take(fontSize, attributes->fontSize);
    take(textAnchor, attributes->textAnchor);
    if (attributes->stroke) {
        stroke = definitions.stroke(*attributes->stroke);
    }
    if (attributes->fill) {
        fill = definitions.fill(*attributes->fill);
    }
    if (attributes->filter) {
        filters = definitions.filters(*attributes->filter);
    }
    if (attributes->fontFamily) {
        fontFamily = {attributes, &*attributes->fontFamily};
    }
}

FillAttributes makeFillAttributes(const State& state) {
    return {std::visit(Painting<Fill>{state.color, state.fillOpacity}, state.fill), state.fillOpacity, state.fillRule};
}

StrokeAttributes makeStrokeAttributes(const State& state) {
    const bool isDrawn = state.strokeWidth > 0;
    return {isDrawn ? std::visit(Painting<Stroke>{state.color, state.strokeOpacity}, state.stroke) : Stroke{},
            state.strokeWidth, state.strokeLineCap, state.strokeLineJoin, State::strokeLineMiterLimit};
}

TextAttributes makeTextAttributes(const State& state) {
    const auto* color = std::get_if<dom::Color>(&state.fill);
    return {color == nullptr ? Color{} : faded(resolved(*color, state.color), state.fillOpacity), *state.fontFamily,
            state.fontSize, state.textAnchor};
}

}  // namespace sorvik::draw::layer_tree
