#include "sorvikdraw/dom/cascade.h"

#include <algorithm>
#include <string>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/white_space.h"
#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw::dom {

namespace {

// The name that a sheet calls an element by; empty for one that it can't name.
struct ElementName {
    std::string_view operator()(const Line&) const { return "line"; }
    std::string_view operator()(const Circle&) const { return "circle"; }
    std::string_view operator()(const Ellipse&) const { return "ellipse"; }
    std::string_view operator()(const Rect&) const { return "rect"; }
    std::string_view operator()(const Polyline&) const { return "polyline"; }
    std::string_view operator()(const Polygon&) const { return "polygon"; }
    std::string_view operator()(const Path&) const { return "path"; }
    std::string_view operator()(const Text&) const { return "text"; }
    std::string_view operator()(const Boxed<Image>&) const { return "image"; }
    std::string_view operator()(const Group&) const { return "g"; }
    std::string_view operator()(const Anchor&) const { return "a"; }
    std::string_view operator()(const NestedSVG&) const { return rootName; }
    std::string_view operator()(const Use&) const { return {}; }
    std::string_view operator()(const Switch&) const { return {}; }

    static constexpr std::string_view rootName = "svg";
};

std::string_view textOf(const Boxed<std::string>& text) { return text ? std::string_view(*text) : std::string_view(); }

}  // namespace

Cascade::Cascade(std::span<const StyleSheet> styles) {
    for (const auto& sheet : styles) {
        for (const auto& [selector, attributes] : sheet.attributes) {
            rules_[{selector.kind, selector.name}].lay(attributes);
            anyClasses_ = anyClasses_ || selector.kind == Kind::className;
        }
    }
}

void Cascade::lay(Overlay& below, const SelectorView& selector) const {
    if (const auto rule = rules_.find(selector); rule != rules_.end()) {
        below.lay(rule->second);
    }
}

void Cascade::layClasses(Overlay& below, std::string_view className) {
    while (!className.empty()) {
        const auto end = std::min(className.find(' '), className.size());
        if (++classNames_ > limits::classNames) {
            throw XMLParserError::other("more than " + std::to_string(limits::classNames) + " class names");
        }
        lay(below, {Kind::className, trimmed(className.substr(0, end))});
        className.remove_prefix(std::min(end + 1, className.size()));
    }
}

Overlay Cascade::makeAttributes(std::string_view elementName, std::string_view className, std::string_view id) {
    Overlay made;
    if (!rules_.empty()) {
        lay(made, {Kind::element, elementName});
        if (anyClasses_) {
            layClasses(made, className);
        }
        lay(made, {Kind::id, id});
    }
    return made;
}

Cascade::Attributes Cascade::presentationAttributes(const GraphicsElement& element) {
    auto over = makeAttributes(std::visit(ElementName(), element.kind), textOf(element.className), textOf(element.id));
    if (over.empty() && setFields(*element.attributes) == 0) {
        return element.style;
    }
    over.lay(*element.style);
    if (over.empty()) {
        return element.attributes;
    }
    auto effective = std::make_shared<PresentationAttributes>(*element.attributes);
    over.applyTo(*effective);
    return effective;
}

PresentationAttributes Cascade::presentationAttributes(const Mask& mask) {
    auto over = makeAttributes({}, mask.className ? std::string_view(*mask.className) : std::string_view(), mask.id);
    over.lay(mask.style);
    auto effective = mask.attributes;
    over.applyTo(effective);
    return effective;
}

PresentationAttributes Cascade::presentationAttributes(const SVG& root) {
    auto effective = root.attributes;
    makeAttributes(ElementName::rootName, {}, {}).applyTo(effective);
    return effective;
}

}  // namespace sorvik::draw::dom
