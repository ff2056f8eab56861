#include "sorvikdraw/dom/document_reader.h"

#include <array>
#include <utility>

#include "sorvikdraw/dom/definition_parser.h"
#include "sorvikdraw/dom/gradient_parser.h"
#include "sorvikdraw/dom/graphics_element_parser.h"
#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/parsing_log.h"
#include "sorvikdraw/dom/presentation_attributes_parser.h"
#include "sorvikdraw/dom/value_parser.h"
#include "sorvikdraw/dom/viewport_parser.h"

namespace sorvik::draw {
namespace {

// What a list or map of children and names costs for each entry, about.
constexpr std::size_t entryBytes = 2 * sizeof(void*);
constexpr std::size_t mapEntryBytes = 80;
// Charged for an element that is looked at, even if nothing is kept of it: an "svg" reads what the ones inside it have
// read already, and twice that where it stands among definitions.
constexpr std::size_t stepBytes = 16;

/// Does something for `element`; an error then tells where that is.
template <typename Action>
void at(const xml::Element& element, const Action& action) {
    try {
        action();
    } catch (const XMLParserError& error) {
        throw error.within(std::string(element.name), element.parsedLocation);
    }
}

struct ContainerOf {
    dom::ChildElements* operator()(dom::Group& group) const { return &group.childElements; }
    dom::ChildElements* operator()(dom::Switch& element) const { return &element.childElements; }
    dom::ChildElements* operator()(dom::Anchor& anchor) const { return &anchor.childElements; }
    template <typename Leaf>
    dom::ChildElements* operator()(Leaf&) const {
        return nullptr;
    }
};

// The two empty lists of elements in a nested one take memory too.
constexpr std::size_t drawingBytes = sizeof(dom::SVG) + std::size_t{2} * 576;

template <typename Gradient>
std::size_t bytesOf(const Gradient& gradient) {
    return sizeof(gradient) + gradient.stops.capacity() * sizeof(dom::GradientStop) +
           gradient.gradientTransform.capacity() * sizeof(dom::Transform);
}

std::size_t bytesOf(const dom::StyleSheet& sheet) {
    return sizeof(sheet) + sheet.attributes.size() * (sizeof(dom::PresentationAttributes) + mapEntryBytes);
}

}  // namespace

// What an "svg" defines, in the order in which it is read. All of it is looked for anywhere inside.
struct DocumentReader::Section {
    ElementIndex::Name name;
    void (DocumentReader::*parse)(const xml::Element&, dom::SVG&);

    static const std::array<Section, ElementIndex::names> all;
};
constexpr std::array<DocumentReader::Section, ElementIndex::names> DocumentReader::Section::all{{
    {ElementIndex::Name::clipPath, &DocumentReader::readClipPath},
    {ElementIndex::Name::linearGradient, &DocumentReader::readLinearGradient},
    {ElementIndex::Name::radialGradient, &DocumentReader::readRadialGradient},
    {ElementIndex::Name::mask, &DocumentReader::readMask},
    {ElementIndex::Name::pattern, &DocumentReader::readPattern},
    {ElementIndex::Name::filter, &DocumentReader::readFilter},
    {ElementIndex::Name::defs, &DocumentReader::parseDefsElements},
    {ElementIndex::Name::style, &DocumentReader::readStyle},
}};

dom::SVG DocumentReader::read() {
    at(root_, [&] { beginSVG(root_, document_); });
    while (!tasks_.empty()) {
        std::visit([&](auto& task) { proceed(task); }, tasks_.top());
    }
    if (refersToIds_) {
        document_.indexIds();
    }
    return std::move(document_);
}

void DocumentReader::beginSVG(const xml::Element& source, dom::SVG& svg) {
    const StyledAttributes attributes(source, options_);
    parseViewport(svg, attributes.parser());
    tasks_.emplace(Drawing{&source, &svg, index_.search(Section::all.front().name, source)});
    readChildren(source, svg.children);
}

// A task that is under way stays where it is while others are pushed.
void DocumentReader::proceed(Drawing& task) {
    const ElementIndex::Entry* const found = task.search.next();
    if (found != nullptr) {
        budget_.spend(stepBytes * found->size());
        at(*found->element, [&] { (this->*Section::all.at(task.section).parse)(*found->element, *task.svg); });
    } else if (++task.section < Section::all.size()) {
        task.search = index_.search(Section::all.at(task.section).name, *task.source);
    } else {
        const Drawing done = task;
        tasks_.pop();
        at(*done.source, [&] { endSVG(*done.source, *done.svg); });
    }
}

void DocumentReader::endSVG(const xml::Element& source, dom::SVG& svg) {
    const StyledAttributes attributes(source, options_);
    svg.attributes = parsePresentationAttributes(attributes.element(), attributes.style(), options_);
    if (&svg != &document_) {
        deliver(append(dom::NestedSVG{&svg}, attributes));
    }
}

void DocumentReader::proceed(ContainerChildren& task) {
    if (task.next == nullptr) {
        tasks_.pop();
        return;
    }
    budget_.spend(stepBytes);
    const xml::Element& source = *std::exchange(task.next, task.next->nextSibling);
    at(source, [&] { readElement(source); });
}

void DocumentReader::readElement(const xml::Element& source) {
    const StyledAttributes attributes(source, options_);
    if (source.name == "svg") {
        budget_.spend(drawingBytes);
        beginSVG(source, document_.nested.emplace_back());
    } else if (auto kind = parseGraphicsElement(source, attributes.parser())) {
        dom::GraphicsElement& element = append(*std::move(kind), attributes);
        deliver(element);
        if (dom::ChildElements* const children = std::visit(ContainerOf(), element.kind)) {
            readChildren(source, *children);
        }
    }
}

dom::GraphicsElement& DocumentReader::append(dom::GraphicsElement::Kind kind, const StyledAttributes& attributes) {
    budget_.spend(sizeof(dom::GraphicsElement) + entryBytes + heapBytes(kind));
    refersToIds_ = refersToIds_ || std::holds_alternative<dom::Use>(kind);
    dom::GraphicsElement& element = document_.elements.emplace_back();
    element.kind = std::move(kind);
    element.id = name("id", attributes);
    element.className = name("class", attributes);
    element.attributes = pool_.ofElement(attributes);
    element.style = pool_.ofStyle(attributes);
    return element;
}

Boxed<std::string> DocumentReader::name(std::string_view attribute, const StyledAttributes& attributes) {
    const auto text = attributes.parser().parseOptional(attribute, ValueParser::parseString);
    if (!text) {
        return {};
    }
    budget_.spend(sizeof(std::string) + text->size());
    return std::string(*text);
}

// Puts an element into what the task in front is filling.
void DocumentReader::deliver(const dom::GraphicsElement& element) {
    const auto& into = std::get<ContainerChildren>(tasks_.top()).into;
    if (auto* const* const children = std::get_if<dom::ChildElements*>(&into)) {
        (*children)->push_back(&element);
        return;
    }
    if (!element.id) {
        throw XMLParserError(XMLParserError::Kind::invalid, {}, "an element in <defs> has no id");
    }
    budget_.spend(mapEntryBytes + element.id->size());
    std::get<dom::Defs*>(into)->elements.try_emplace(*element.id, &element);
}

void DocumentReader::readChildren(const xml::Element& source, dom::ChildElements& into) {
    if (source.firstChild != nullptr) {
        tasks_.emplace(ContainerChildren{source.firstChild, &into});
    }
}

// A list of definitions does not grow while the children of its last one are read: another "svg" has lists of its own.
void DocumentReader::readClipPath(const xml::Element& source, dom::SVG& svg) {
    budget_.spend(sizeof(dom::ClipPath));
    readChildren(source, svg.defs.clipPaths.emplace_back(parseClipPath(source, options_)).childElements);
}

void DocumentReader::readLinearGradient(const xml::Element& source, dom::SVG& svg) {
    const auto& gradient = svg.defs.linearGradients.emplace_back(parseLinearGradient(source, options_));
    budget_.spend(bytesOf(gradient));
}

void DocumentReader::readRadialGradient(const xml::Element& source, dom::SVG& svg) {
    const auto& gradient = svg.defs.radialGradients.emplace_back(parseRadialGradient(source, options_));
    budget_.spend(bytesOf(gradient));
}

void DocumentReader::readMask(const xml::Element& source, dom::SVG& svg) {
    budget_.spend(sizeof(dom::Mask));
    readChildren(source, svg.defs.masks.emplace_back(parseMask(source, options_)).childElements);
}

void DocumentReader::readPattern(const xml::Element& source, dom::SVG& svg) {
    budget_.spend(sizeof(dom::Pattern));
    readChildren(source, svg.defs.patterns.emplace_back(parsePattern(source, options_)).childElements);
}

void DocumentReader::readFilter(const xml::Element& source, dom::SVG& svg) {
    const auto& filter = svg.defs.filters.emplace_back(parseFilter(source, options_));
    budget_.spend(sizeof(filter) + filter.effects.capacity() * sizeof(dom::Filter::Effect));
}

void DocumentReader::parseDefsElements(const xml::Element& source, dom::SVG& svg) {
    tasks_.emplace(ContainerChildren{source.firstChild, &svg.defs});
}

// Every "svg" round a sheet has it, read once and reported once.
void DocumentReader::readStyle(const xml::Element& source, dom::SVG& svg) {
    auto known = sheets_.find(&source);
    if (known == sheets_.end()) {
        known = sheets_.emplace(&source, parseSheet(source)).first;
    }
    if (known->second) {
        budget_.spend(bytesOf(*known->second));
        svg.styles.push_back(*known->second);
    }
}

std::optional<dom::StyleSheet> DocumentReader::parseSheet(const xml::Element& source) {
    try {
        return sheetParser_.parse(source.innerText.value_or(""));
    } catch (const XMLParserError& error) {
        if (++faultySheets_ > limits::faultyStyleSheets) {
            throw XMLParserError::other("the document holds too many faulty style sheets");
        }
        logParsingError(error, filename_, &source);
        return std::nullopt;
    }
}

}  // namespace sorvik::draw
