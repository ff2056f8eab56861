#include "sorvikdraw/engine/layer_tree_builder.h"

#include <algorithm>
#include <deque>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "sorvikdraw/dom/cascade.h"
#include "sorvikdraw/dom/printable_text.h"
#include "sorvikdraw/engine/builder_state.h"
#include "sorvikdraw/engine/definitions.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/image_loader.h"
#include "sorvikdraw/engine/layer_budget.h"
#include "sorvikdraw/engine/shape_conversion.h"
#include "sorvikdraw/engine/text_placement.h"
#include "sorvikdraw/engine/transform_conversion.h"

namespace sorvik::draw::layer_tree {
namespace {

using dom::Cascade;
using dom::GraphicsElement;
using Children = std::span<const GraphicsElement* const>;

// What an attribute record holds on the heap; the list of dashes is left behind.
std::size_t heapBytes(const dom::PresentationAttributes& attributes) {
    const auto url = [](const Boxed<dom::URL>& box) { return box ? box->absoluteString.size() : 0; };
    const auto paint = [&url](const std::optional<dom::Fill>& fill) {
        const auto* reference = fill ? std::get_if<Boxed<dom::URL>>(&*fill) : nullptr;
        return reference == nullptr ? 0 : url(*reference);
    };
    return (attributes.strokeDashArray ? attributes.strokeDashArray->size() * sizeof(float) : 0) +
           (attributes.fontFamily ? attributes.fontFamily->size() : 0) +
           (attributes.transform ? attributes.transform->size() * sizeof(dom::Transform) : 0) + paint(attributes.fill) +
           paint(attributes.stroke) + url(attributes.clipPath) + url(attributes.mask) + url(attributes.filter);
}

Translate offset(const std::optional<float>& x, const std::optional<float>& y) {
    return {x.value_or(0), y.value_or(0)};
}

void addUnlessNone(std::vector<Transform>& transforms, const Translate& by) {
    if (by != Translate{}) {
        transforms.emplace_back(by);
    }
}

// From the space of the contents of an "svg" to the space that it stands in.
void addViewport(std::vector<Transform>& transforms, const dom::SVG& svg) {
    addUnlessNone(transforms, offset(svg.x, svg.y));
    if (svg.viewBox) {
        const Scale scale{static_cast<float>(svg.width) / svg.viewBox->width,
                          static_cast<float>(svg.height) / svg.viewBox->height};
        if (scale != Scale{}) {
            transforms.emplace_back(scale);
        }
        addUnlessNone(transforms, {-svg.viewBox->x, -svg.viewBox->y});
    }
}

// A container whose children are being made, or a `use` whose one child stands elsewhere.
struct Frame {
    Children children;
    Layer* layer;
    State state;
    const GraphicsElement* used = nullptr;  // by a `use`
    Translate useOffset = {};               // of it
    bool isUsedDone = false;

    // Null behind the last.
    const GraphicsElement* nextChild() {
        if (used != nullptr) {
            return std::exchange(isUsedDone, true) ? nullptr : used;
        }
        if (children.empty()) {
            return nullptr;
        }
        const GraphicsElement* const child = children.front();
        children = children.subspan(1);
        return child;
    }
};

// What comes first in a layer's transforms.
struct Placement {
    Translate useOffset = {};
    const dom::SVG* viewport = nullptr;
};

class Building {
public:
    explicit Building(const dom::SVG& svg) : svg_(svg), cascade_(svg.styles), definitions_(svg, cascade_, budget_) {}

    Tree build() {
        makeRoot();
        while (const Definitions::Part* part = definitions_.nextPart()) {
            isInDefinition_ = true;
            std::visit([this](auto chosen) { fill(chosen); }, *part);
        }
        definitions_.checkReferences();
        return std::move(tree_);
    }

private:
    // MARK: where layers begin

    void makeRoot() {
        Layer& root = newLayer();
        tree_.root = &root;
        const auto attributes =
            std::make_shared<const dom::PresentationAttributes>(cascade_.presentationAttributes(svg_));
        const State state = State().of(attributes, definitions_);
        if (describe(root, state, *attributes, {{}, &svg_})) {
            makeChildren({svg_.children, &root, state});
        }
    }

    void fill(const Definitions::MaskPart& part) {
        const dom::Mask& mask = *part.definition;
        const auto attributes =
            std::make_shared<const dom::PresentationAttributes>(cascade_.presentationAttributes(mask));
        if (mask.className) {
            part.layer->className = *mask.className;
        }
        makeChildren({mask.childElements, part.layer, State().of(attributes, definitions_)});
    }

    void fill(const Definitions::PatternPart& part) {
        Layer collected;
        makeChildren({part.definition->childElements, &collected, State()});
        for (const Layer::Contents& child : collected.contents) {
            part.pattern->contents.push_back(std::get<Layer*>(child));
        }
    }

    // All that is inside, however deep.
    void makeChildren(Frame outermost) {
        open(std::move(outermost));
        while (!frames_.empty()) {
            Frame& frame = frames_.back();
            if (const GraphicsElement* const child = frame.nextChild()) {
                make(*child, newChild(*frame.layer), frame.state, frame.useOffset);
            } else {
                close();
            }
        }
    }

    void open(Frame frame) {
        frame.layer->contents.reserve(frame.children.size());
        budget_.spend(frame.children.size() * sizeof(Layer::Contents));
        frames_.push_back(std::move(frame));
    }

    void close() {
        if (frames_.back().used != nullptr) {
            uses_.pop_back();
        }
        frames_.pop_back();
    }

    // MARK: one layer

    Layer& newLayer() {
        if (isInDefinition_ || !uses_.empty()) {
            budget_.expand();
        }
        budget_.spend(sizeof(Layer));
        return tree_.layers.emplace_back();
    }

    Layer& newChild(Layer& parent) {
        Layer& child = newLayer();
        parent.contents.emplace_back(&child);
        return child;
    }

    void make(const GraphicsElement& element, Layer& layer, const State& outer, const Translate& useOffset) {
        const Cascade::Attributes attributes = presentationAttributes(element);
        const State state = outer.of(attributes, definitions_);
        if (element.className) {
            budget_.spend(element.className->size());
            layer.className = element.className;
        }
        const auto* nested = std::get_if<dom::NestedSVG>(&element.kind);
        if (describe(layer, state, *attributes, {useOffset, nested == nullptr ? nullptr : nested->svg})) {
            std::visit(ContentsOf{*this, element, layer, state}, element.kind);
        }
    }

    // Records that are laid together from several belong to this element alone.
    Cascade::Attributes presentationAttributes(const GraphicsElement& element) {
        auto attributes = cascade_.presentationAttributes(element);
        if (attributes != element.attributes && attributes != element.style) {
            budget_.spend(heapBytes(*attributes));
        }
        return attributes;
    }

    // Everything but the contents. False for a layer that isn't displayed, which stays empty.
    bool describe(Layer& layer, const State& state, const dom::PresentationAttributes& attributes,
                  const Placement& placement) {
        if (state.display == dom::DisplayMode::none) {
            return false;
        }
        layer.opacity = state.opacity;
        layer.transform = makeTransforms(attributes, placement);
        layer.clipRule = attributes.clipRule;
        layer.filters = state.filters;
        if (attributes.clipPath) {
            layer.clip = definitions_.clip(*attributes.clipPath);
        }
        if (attributes.mask) {
            layer.mask = definitions_.mask(*attributes.mask, tree_);
        }
        return true;
    }

    std::vector<Transform> makeTransforms(const dom::PresentationAttributes& attributes, const Placement& placement) {
        std::vector<Transform> all;
        addUnlessNone(all, placement.useOffset);
        if (placement.viewport != nullptr) {
            addViewport(all, *placement.viewport);
        }
        if (attributes.transform) {
            const auto own = layer_tree::makeTransforms(*attributes.transform);
            all.insert(all.end(), own.begin(), own.end());
        }
        budget_.spend(all.size() * sizeof(Transform));
        return all;
    }

    // MARK: contents

    struct ContentsOf {
        Building& building;
        const GraphicsElement& element;
        Layer& layer;
        const State& state;

        void operator()(const dom::Line&) const { building.addShape(layer, element, state); }
        void operator()(const dom::Circle&) const { building.addShape(layer, element, state); }
        void operator()(const dom::Ellipse&) const { building.addShape(layer, element, state); }
        void operator()(const dom::Rect&) const { building.addShape(layer, element, state); }
        void operator()(const dom::Polyline&) const { building.addShape(layer, element, state); }
        void operator()(const dom::Polygon&) const { building.addShape(layer, element, state); }
        void operator()(const dom::Path&) const { building.addShape(layer, element, state); }
        void operator()(const dom::Text& text) const { building.addText(layer, text, state); }
        void operator()(const Boxed<dom::Image>& image) const { building.addImage(layer, *image); }
        void operator()(const dom::Use& use) const { building.addUsed(layer, use, state); }
        void operator()(const dom::Group& group) const { building.open({group.childElements, &layer, state}); }
        void operator()(const dom::Anchor& anchor) const { building.open({anchor.childElements, &layer, state}); }
        void operator()(const dom::NestedSVG& nested) const { building.open({nested.svg->children, &layer, state}); }
        void operator()(const dom::Switch& choice) const {
            const Children children = choice.childElements;
            building.open({children.first(std::min<std::size_t>(children.size(), 1)), &layer, state});
        }
    };

    void addShape(Layer& layer, const GraphicsElement& element, const State& state) {
        budget_.spend(sizeof(Layer::Contents) + sizeof(Layer::ShapeContents));
        layer.contents.emplace_back(std::make_unique<Layer::ShapeContents>(
            Layer::ShapeContents{shape(element), makeStrokeAttributes(state), makeFillAttributes(state)}));
    }

    // One that is used is likely to be used again.
    Shape shape(const GraphicsElement& element) {
        if (uses_.empty()) {
            return newShape(element);
        }
        const auto known = usedShapes_.find(&element);
        return known != usedShapes_.end() ? known->second
                                          : usedShapes_.emplace(&element, newShape(element)).first->second;
    }

    Shape newShape(const GraphicsElement& element) {
        Shape shape = *makeShape(element);
        budget_.spend(layer_tree::heapBytes(shape));
        return shape;
    }

    void addText(Layer& layer, const dom::Text& text, const State& state) {
        budget_.spend(sizeof(Layer::Contents) + sizeof(Layer::TextContents) + text.value.size() +
                      state.fontFamily->size());
        auto contents = std::make_unique<Layer::TextContents>(
            Layer::TextContents{text.value, {text.x.value_or(0), text.y.value_or(0)}, makeTextAttributes(state)});
        contents->at.x += textPlacement_.offset(contents->text, contents->attributes);
        layer.contents.emplace_back(std::move(contents));
    }

    void addImage(Layer& layer, const dom::Image& image) {
        budget_.spend(sizeof(Layer::Contents) + sizeof(Image));
        layer.contents.emplace_back(std::make_unique<Image>(
            Image{bitmap(image), {image.x.value_or(0), image.y.value_or(0)}, image.width, image.height}));
    }

    // Once for each element, however often it is used: pictures are large.
    Bitmap bitmap(const dom::Image& image) {
        const auto known = bitmaps_.find(&image);
        if (known != bitmaps_.end()) {
            return known->second;
        }
        Bitmap bitmap = loadBitmap(image.href);
        budget_.spend(bitmap.bytes->size());
        return bitmaps_.emplace(&image, std::move(bitmap)).first->second;
    }

    void addUsed(Layer& layer, const dom::Use& use, const State& state) {
        const GraphicsElement* const used = referenced(use.href);
        if (std::ranges::find(uses_, used) != uses_.end()) {
            throw DrawingError::invalid("the element \"" + printable(*use.href.fragment()) + "\" uses itself");
        }
        if (uses_.size() == limits::expansionDepth) {
            throw LimitError("uses are nested more than " + std::to_string(limits::expansionDepth) + " deep");
        }
        uses_.push_back(used);
        open({{}, &layer, state, used, offset(use.x, use.y)});
    }

    const GraphicsElement* referenced(const dom::URL& href) {
        const auto id = href.fragment();
        budget_.spend(id ? id->size() : 0);
        const GraphicsElement* const element = id ? svg_.firstGraphicsElement(*id) : nullptr;
        if (element == nullptr) {
            throw DrawingError::invalid("missing referenced element: " + printable(href.absoluteString));
        }
        return element;
    }

    const dom::SVG& svg_;
    LayerBudget budget_;
    Cascade cascade_;
    Definitions definitions_;
    TextPlacement textPlacement_;
    Tree tree_;

    std::deque<Frame> frames_;                  // the innermost last; a deque, since states of outer ones are in use
    std::vector<const GraphicsElement*> uses_;  // what the open frames use
    bool isInDefinition_ = false;

    std::unordered_map<const GraphicsElement*, Shape> usedShapes_;
    std::unordered_map<const dom::Image*, Bitmap> bitmaps_;
};

}  // namespace

Tree Builder::makeLayer() { return Building(svg_).build(); }

}  // namespace sorvik::draw::layer_tree
