#pragma once

#include <optional>
#include <stack>
#include <string_view>
#include <unordered_map>
#include <variant>

#include "sorvikdraw/dom/attributes_pool.h"
#include "sorvikdraw/dom/element_index.h"
#include "sorvikdraw/dom/memory_budget.h"
#include "sorvikdraw/dom/style_sheet_parser.h"
#include "sorvikdraw/dom/styled_attributes.h"
#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw {

/// Reads one document, with a stack of tasks of its own: drawings stand inside drawings, in groups and in definitions,
/// a thousand deep.
class DocumentReader {
public:
    /// `root` is an "svg"; it and `filename` outlive the reader.
    DocumentReader(const xml::Element& root, XMLParserOptions options, std::string_view filename)
        : root_(root), options_(options), filename_(filename), index_(root) {}

    /// To be called once. Throws XMLParserError.
    [[nodiscard]] dom::SVG read();

private:
    /// The children of an element, from `next` on, to be put into a container or among the definitions.
    struct ContainerChildren {
        const xml::Element* next = nullptr;
        std::variant<dom::ChildElements*, dom::Defs*> into;
    };
    /// An "svg" whose children have been read.
    struct Drawing {
        const xml::Element* source = nullptr;
        dom::SVG* svg = nullptr;
        ElementIndex::Search search;
        std::size_t section = 0;  ///< of what it defines
    };
    using Task = std::variant<ContainerChildren, Drawing>;
    struct Section;

    void proceed(ContainerChildren& task);
    void proceed(Drawing& task);
    void beginSVG(const xml::Element& source, dom::SVG& svg);
    void endSVG(const xml::Element& source, dom::SVG& svg);

    void readElement(const xml::Element& source);
    [[nodiscard]] Boxed<std::string> name(std::string_view attribute, const StyledAttributes& attributes);
    dom::GraphicsElement& append(dom::GraphicsElement::Kind kind, const StyledAttributes& attributes);
    void deliver(const dom::GraphicsElement& element);
    void readChildren(const xml::Element& source, dom::ChildElements& into);

    void readClipPath(const xml::Element& source, dom::SVG& svg);
    void readLinearGradient(const xml::Element& source, dom::SVG& svg);
    void readRadialGradient(const xml::Element& source, dom::SVG& svg);
    void readMask(const xml::Element& source, dom::SVG& svg);
    void readPattern(const xml::Element& source, dom::SVG& svg);
    void readFilter(const xml::Element& source, dom::SVG& svg);
    void parseDefsElements(const xml::Element& source, dom::SVG& svg);
    void readStyle(const xml::Element& source, dom::SVG& svg);
    [[nodiscard]] std::optional<dom::StyleSheet> parseSheet(const xml::Element& source);

    const xml::Element& root_;
    XMLParserOptions options_;
    std::string_view filename_;
    ElementIndex index_;
    MemoryBudget budget_;
    AttributesPool pool_{options_, budget_};
    StyleSheetParser sheetParser_;
    std::unordered_map<const xml::Element*, std::optional<dom::StyleSheet>> sheets_;
    std::size_t faultySheets_ = 0;
    std::stack<Task> tasks_;
    dom::SVG document_;
    bool refersToIds_ = false;
};

}  // namespace sorvik::draw
