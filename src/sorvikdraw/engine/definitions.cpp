#include "sorvikdraw/engine/definitions.h"

#include <string>
#include <utility>

#include "sorvikdraw/dom/printable_text.h"
#include "sorvikdraw/engine/shape_conversion.h"
#include "sorvikdraw/engine/transform_conversion.h"

namespace sorvik::draw::layer_tree {
namespace {

template <typename Table, typename Definition>
Table tableOf(const std::vector<Definition>& definitions) {
    Table table;
    for (const Definition& definition : definitions) {
        table.add(definition.id, {&definition});
    }
    return table;
}

struct PartName {
    std::string operator()(const Definitions::PatternPart& part) const {
        return "pattern \"" + printable(part.definition->id) + "\"";
    }
    std::string operator()(const Definitions::MaskPart& part) const {
        return "mask \"" + printable(part.definition->id) + "\"";
    }
};

}  // namespace

Definitions::Definitions(const dom::SVG& svg, dom::Cascade& cascade, LayerBudget& budget)
    : cascade_(cascade),
      budget_(budget),
      patterns_(tableOf<decltype(patterns_)>(svg.defs.patterns)),
      linearGradients_(tableOf<decltype(linearGradients_)>(svg.defs.linearGradients)),
      radialGradients_(tableOf<decltype(radialGradients_)>(svg.defs.radialGradients)),
      clipPaths_(tableOf<decltype(clipPaths_)>(svg.defs.clipPaths)),
      masks_(tableOf<decltype(masks_)>(svg.defs.masks)),
      filters_(tableOf<decltype(filters_)>(svg.defs.filters)) {}

template <typename Definition, typename Made>
Definitions::Entry<Definition, Made>* Definitions::find(Table<Definition, Made>& table, const dom::URL& url) {
    const auto id = url.fragment();
    if (!id) {
        return nullptr;
    }
    budget_.spend(id->size());
    return table.find(*id);
}

// MARK: paints

FillPaint Definitions::fill(const dom::Fill& fill) {
    if (const auto* url = std::get_if<Boxed<dom::URL>>(&fill)) {
        if (auto found = pattern(**url)) {
            return found;
        }
    }
    return std::visit([](auto paint) { return FillPaint(std::move(paint)); }, stroke(fill));
}

StrokePaint Definitions::stroke(const dom::Fill& fill) {
    if (const auto* color = std::get_if<dom::Color>(&fill)) {
        return *color;
    }
    const dom::URL& url = *std::get<Boxed<dom::URL>>(fill);
    if (auto linear = gradient(linearGradients_, url)) {
        return linear;
    }
    if (auto radial = gradient(radialGradients_, url)) {
        return radial;
    }
    return dom::Color{};
}

template <typename Definition, typename Made>
Made Definitions::gradient(Table<Definition, Made>& table, const dom::URL& url) {
    auto* const found = find(table, url);
    if (found == nullptr) {
        return nullptr;
    }
    if (!std::exchange(found->isMade, true)) {
        const auto& own = *found->definition;
        const auto& stops = this->stops(table, own);
        budget_.spend(stops.size() * sizeof(Gradient::Stop) + own.gradientTransform.size() * sizeof(Transform));
        found->made = makeGradient(own, stops);
    }
    return found->made;
}

// Those of the gradient referred to are its own ones, whatever it refers to itself.
template <typename Definition, typename Made>
const std::vector<dom::GradientStop>& Definitions::stops(Table<Definition, Made>& table, const Definition& gradient) {
    const auto* const other = gradient.href ? find(table, *gradient.href) : nullptr;
    return other == nullptr ? gradient.stops : other->definition->stops;
}

std::shared_ptr<const Pattern> Definitions::pattern(const dom::URL& url) {
    auto* const found = find(patterns_, url);
    if (found == nullptr) {
        return nullptr;
    }
    if (!std::exchange(found->isMade, true)) {
        const dom::Pattern& definition = *found->definition;
        auto pattern = std::make_shared<Pattern>(Pattern{{{0, 0}, {definition.width, definition.height}}, {}});
        budget_.spend(sizeof(Pattern));
        found->made = MadePattern{pattern, addPart(PatternPart{&definition, pattern})};
    }
    refer(found->made.node);
    return found->made.pattern;
}

// MARK: clips, filters, masks

Shared<std::vector<ClipShape>> Definitions::clip(const dom::URL& url) {
    auto* const found = find(clipPaths_, url);
    if (found == nullptr) {
        return nullptr;
    }
    if (!std::exchange(found->isMade, true)) {
        found->made = makeClip(*found->definition);
    }
    return found->made;
}

std::vector<ClipShape> Definitions::makeClip(const dom::ClipPath& definition) {
    std::vector<ClipShape> shapes;
    for (const dom::GraphicsElement* child : definition.childElements) {
        if (auto shape = makeShape(*child)) {
            budget_.spend(sizeof(ClipShape) + heapBytes(*shape));
            const auto attributes = cascade_.presentationAttributes(*child);
            const auto transform = attributes->transform ? product(makeTransforms(*attributes->transform)) : Matrix{};
            shapes.push_back({std::move(*shape), transform});
        }
    }
    return shapes;
}

Shared<std::vector<dom::Filter::Effect>> Definitions::filters(const dom::URL& url) {
    auto* const found = find(filters_, url);
    if (found == nullptr) {
        return nullptr;
    }
    if (!std::exchange(found->isMade, true)) {
        found->made = found->definition->effects;
    }
    return found->made;
}

Layer* Definitions::mask(const dom::URL& url, Tree& tree) {
    auto* const found = find(masks_, url);
    if (found == nullptr) {
        return nullptr;
    }
    if (!std::exchange(found->isMade, true)) {
        budget_.spend(sizeof(Layer));
        Layer& layer = tree.layers.emplace_back();
        found->made = MadeMask{&layer, addPart(MaskPart{found->definition, &layer})};
    }
    refer(found->made.node);
    return found->made.layer;
}

// MARK: parts

ReferenceGraph::Node Definitions::addPart(Part part) {
    parts_.push_back(std::move(part));
    return references_.addNode();
}

// What the drawing itself refers to closes no circle.
void Definitions::refer(ReferenceGraph::Node to) {
    if (handedOut_ > 0) {
        references_.connect(static_cast<ReferenceGraph::Node>(handedOut_ - 1), to);
    }
}

const Definitions::Part* Definitions::nextPart() {
    return handedOut_ < parts_.size() ? &parts_[handedOut_++] : nullptr;
}

void Definitions::checkReferences() const {
    const auto shape = references_.shape();
    if (shape.inCircle) {
        throw LimitError("the " + std::visit(PartName{}, parts_[*shape.inCircle]) + " refers to itself");
    }
    if (shape.depth > limits::expansionDepth) {
        throw LimitError("patterns and masks are nested more than " + std::to_string(limits::expansionDepth) + " deep");
    }
}

}  // namespace sorvik::draw::layer_tree
