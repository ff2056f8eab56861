#include "sorvikdraw/dom/elements.h"

#include "sorvikdraw/dom/svg.h"

namespace sorvik::draw::dom {

namespace {

struct ChildrenOf {
    using Children = std::span<const GraphicsElement* const>;

    Children operator()(const Group& group) const { return group.childElements; }
    Children operator()(const Switch& element) const { return element.childElements; }
    Children operator()(const Anchor& anchor) const { return anchor.childElements; }
    Children operator()(const NestedSVG& nested) const { return nested.svg->children; }
    template <typename Leaf>
    Children operator()(const Leaf&) const {
        return {};
    }
};

}  // namespace

std::span<const GraphicsElement* const> childElements(const GraphicsElement& element) {
    return std::visit(ChildrenOf(), element.kind);
}

}  // namespace sorvik::draw::dom
