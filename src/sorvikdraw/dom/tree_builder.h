#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw::xml {

/// Puts a tree together from a parser's events. Elements of foreign namespaces are dropped, and what they hold goes to
/// the element that is open round them.
class TreeBuilder {
public:
    /// `tree` is empty and outlives the builder.
    explicit TreeBuilder(Tree& tree) : tree_(tree) {}

    // The events. They throw XMLParserError for a document beyond all limits.
    /// Names carry their prefixes; `attributes` is name, value, name, value, ..., null.
    void startElement(const char* name, const char* const* attributes, SourceLocation location);
    void endElement();
    void characters(std::string_view text);

    /// The innermost open element; null when there is none.
    [[nodiscard]] const Element* openElement() const { return elements_.empty() ? nullptr : elements_.back().element; }

private:
    struct Prefix {
        bool valid = false;  ///< whether it stands for a namespace whose elements are kept
    };
    struct Name {
        std::string_view local;
        const Prefix* prefix = nullptr;
    };
    struct Declaration {
        Prefix* prefix = nullptr;
        bool before = false;
    };
    struct OpenTag {
        bool kept = false;
        std::size_t declarations = 0;  ///< those in force outside
    };
    struct OpenElement {
        Element* element = nullptr;
        std::size_t text = 0;  ///< where its own begins in text_
        bool hasText = false;
    };

    std::size_t declareNamespaces(const char* const* attributes);
    void declare(std::string_view prefix, std::string_view uri);
    Element& appendElement(std::string_view name, SourceLocation location);
    [[nodiscard]] std::span<const Attribute> copyAttributes(const char* const* attributes, std::size_t count);
    [[nodiscard]] const Name& elementName(std::string_view qualified);
    [[nodiscard]] Prefix& prefixNamed(std::string_view name);
    [[nodiscard]] std::string_view attributeName(std::string_view name);
    [[nodiscard]] std::string_view copy(std::string_view text);
    void spend(std::size_t bytes);

    Tree& tree_;
    std::vector<OpenTag> tags_;
    std::vector<OpenElement> elements_;
    std::vector<Declaration> declarations_;
    std::unordered_map<std::string_view, Prefix> prefixes_{{"", {true}}};
    std::unordered_map<std::string_view, Name> elementNames_;
    std::unordered_set<std::string_view> attributeNames_;
    std::string text_;  ///< of all open elements, the innermost last
    std::size_t started_ = 0;
    std::size_t spent_ = 0;
};

}  // namespace sorvik::draw::xml
