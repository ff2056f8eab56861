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

State State::of(const dom::Cascade::Attributes& attributes, Definitions& definitions) const {
    State inner = *this;
    inner.opacity = attributes->opacity.value_or(1);
    take(inner.display, attributes->display);
    take(inner.color, attributes->color);
    take(inner.strokeWidth, attributes->strokeWidth);
    take(inner.strokeOpacity, attributes->strokeOpacity);
    take(inner.strokeLineCap, attributes->strokeLineCap);
    take(inner.strokeLineJoin, attributes->strokeLineJoin);
    take(inner.fillOpacity, attributes->fillOpacity);
    take(inner.fillRule, attributes->fillRule);
    take(inner.fontSize, attributes->fontSize);
    take(inner.textAnchor, attributes->textAnchor);
    if (attributes->stroke) {
        inner.stroke = definitions.stroke(*attributes->stroke);
    }
    if (attributes->fill) {
        inner.fill = definitions.fill(*attributes->fill);
    }
    if (attributes->filter) {
        inner.filters = definitions.filters(*attributes->filter);
    }
    if (attributes->fontFamily) {
        inner.fontFamily = {attributes, &*attributes->fontFamily};
    }
    return inner;
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
