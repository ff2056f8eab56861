#include "sorvikdraw/dom/tree_builder.h"

#include <algorithm>
#include <array>
#include <memory>

#include "sorvikdraw/dom/limits.h"

namespace sorvik::draw::xml {
namespace {

constexpr std::array<std::string_view, 2> validNamespaces{"http://www.w3.org/2000/svg", ""};

constexpr std::string_view declaration = "xmlns";

bool declaresNamespace(std::string_view attribute) {
    return attribute.starts_with(declaration) &&
           (attribute.size() == declaration.size() || attribute[declaration.size()] == ':');
}

// A name costs a place in a table besides its text.
constexpr std::size_t nameBytes = 64;

}  // namespace

void TreeBuilder::startElement(const char* name, const char* const* attributes, SourceLocation location) {
    if (tags_.size() == limits::nesting) {
        throw XMLParserError::other("more than " + std::to_string(limits::nesting) + " elements inside each other");
    }
    if (++started_ > limits::elements) {
        throw XMLParserError::other("more than " + std::to_string(limits::elements) + " elements");
    }
    tags_.push_back({.kept = false, .declarations = declarations_.size()});
    const std::size_t count = declareNamespaces(attributes);
    const Name& known = elementName(name);
    if (known.prefix->valid) {
        Element& element = appendElement(known.local, location);
        element.attributes = copyAttributes(attributes, count);
        elements_.push_back({&element, text_.size()});
        tags_.back().kept = true;
    }
}

void TreeBuilder::endElement() {
    const OpenTag tag = tags_.back();
    tags_.pop_back();
    if (tag.kept) {
        const OpenElement& open = elements_.back();
        if (open.hasText) {
            open.element->innerText = copy(std::string_view(text_).substr(open.text));
            text_.resize(open.text);
        }
        elements_.pop_back();
    }
    while (declarations_.size() > tag.declarations) {
        declarations_.back().prefix->valid = declarations_.back().before;
        declarations_.pop_back();
    }
}

void TreeBuilder::characters(std::string_view text) {
    if (elements_.empty()) {
        return;
    }
    spend(text.size());
    text_ += text;
    elements_.back().hasText = true;
}

// Gives the number of the other attributes.
std::size_t TreeBuilder::declareNamespaces(const char* const* attributes) {
    std::size_t others = 0;
    for (const char* const* pair = attributes; *pair != nullptr; pair += 2) {
        const std::string_view name = pair[0];
        if (declaresNamespace(name)) {
            declare(name.substr(std::min(name.size(), declaration.size() + 1)), pair[1]);
        } else {
            ++others;
        }
    }
    // Foreign elements are charged alike: a document type can give each a thousand attributes.
    spend(others * sizeof(Attribute));
    return others;
}

void TreeBuilder::declare(std::string_view prefix, std::string_view uri) {
    spend(sizeof(Declaration));
    Prefix& named = prefixNamed(prefix);
    declarations_.push_back({&named, named.valid});
    named.valid = std::ranges::find(validNamespaces, uri) != validNamespaces.end();
}

Element& TreeBuilder::appendElement(std::string_view name, SourceLocation location) {
    spend(sizeof(Element));
    Element& element = tree_.elements.emplace_back();
    element.name = name;
    element.parsedLocation = location;
    if (elements_.empty()) {
        tree_.root = &element;
        return element;
    }
    Element& parent = *elements_.back().element;
    (parent.lastChild != nullptr ? parent.lastChild->nextSibling : parent.firstChild) = &element;
    parent.lastChild = &element;
    return element;
}

std::span<const Attribute> TreeBuilder::copyAttributes(const char* const* attributes, std::size_t count) {
    if (count == 0) {
        return {};
    }
    std::pmr::polymorphic_allocator<Attribute> allocator(&tree_.memory);
    Attribute* const first = allocator.allocate(count);
    Attribute* next = first;
    for (const char* const* pair = attributes; *pair != nullptr; pair += 2) {
        const std::string_view name = pair[0];
        if (!declaresNamespace(name)) {
            const std::string_view value = pair[1];
            spend(value.size());
            std::construct_at(next++, attributeName(name), copy(value));
        }
    }
    return {first, count};
}

const TreeBuilder::Name& TreeBuilder::elementName(std::string_view qualified) {
    const auto known = elementNames_.find(qualified);
    if (known != elementNames_.end()) {
        return known->second;
    }
    spend(nameBytes + qualified.size());
    const std::string_view name = copy(qualified);
    const std::size_t colon = name.find(':');
    const bool prefixed = colon != std::string_view::npos;
    Prefix& prefix = prefixNamed(prefixed ? name.substr(0, colon) : std::string_view());
    return elementNames_.emplace(name, Name{prefixed ? name.substr(colon + 1) : name, &prefix}).first->second;
}

TreeBuilder::Prefix& TreeBuilder::prefixNamed(std::string_view name) {
    const auto known = prefixes_.find(name);
    if (known != prefixes_.end()) {
        return known->second;
    }
    spend(nameBytes + name.size());
    return prefixes_.emplace(copy(name), Prefix()).first->second;
}

std::string_view TreeBuilder::attributeName(std::string_view name) {
    const auto known = attributeNames_.find(name);
    if (known != attributeNames_.end()) {
        return *known;
    }
    spend(nameBytes + name.size());
    return *attributeNames_.insert(copy(name)).first;
}

std::string_view TreeBuilder::copy(std::string_view text) {
    if (text.empty()) {
        return "";
    }
    auto* const bytes = static_cast<char*>(tree_.memory.allocate(text.size(), 1));
    text.copy(bytes, text.size());
    return {bytes, text.size()};
}

void TreeBuilder::spend(std::size_t bytes) {
    spent_ += bytes;
    if (spent_ > limits::treeBytes) {
        throw XMLParserError::other("too large: it takes more than " + std::to_string(limits::treeBytes >> 20U) +
                                    " MB of memory");
    }
}

}  // namespace sorvik::draw::xml
