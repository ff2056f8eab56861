#pragma once

#include <cstddef>
#include <deque>
#include <memory_resource>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "sorvikdraw/dom/xml_parser_error.h"

namespace sorvik::draw::xml {

/// Name and value, entities resolved. The name keeps its prefix, as in "xlink:href".
struct Attribute {
    std::string_view name;
    std::string_view value;
    bool operator==(const Attribute&) const = default;
};

/// One element of a document. All texts and lists lie in the Tree's memory.
struct Element {
    std::string_view name;  ///< without prefix
    std::span<const Attribute> attributes;
    std::optional<std::string_view> innerText;  ///< every run of text directly inside, put together
    std::optional<SourceLocation> parsedLocation;
    Element* firstChild = nullptr;  ///< children in document order: firstChild, then nextSibling
    Element* nextSibling = nullptr;
    Element* lastChild = nullptr;

    [[nodiscard]] std::optional<std::string_view> attribute(std::string_view wanted) const;
};

/// A document's elements. Destroyed without recursion.
struct Tree {
    std::pmr::monotonic_buffer_resource memory;
    std::deque<Element> elements;  ///< in document order
    Element* root = nullptr;
};

}  // namespace sorvik::draw::xml
