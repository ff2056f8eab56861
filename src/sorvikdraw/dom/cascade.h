#pragma once

#include <compare>
#include <cstddef>
#include <map>
#include <memory>
#include <span>
#include <string_view>

#include "sorvikdraw/dom/elements.h"
#include "sorvikdraw/dom/presentation_fields.h"
#include "sorvikdraw/dom/style_sheet.h"
#include "sorvikdraw/dom/svg.h"

namespace sorvik::draw::dom {

/// Puts the effective attributes of elements together: from weak to strong their XML attributes, the sheets' rules for
/// their element name, for each of their classes in the order written, for their id, and their `style`.
///
/// Made once for a document, whose sheets it refers to; it costs an element one look-up for each selector of it,
/// however many sheets there are.
class Cascade {
public:
    using Attributes = std::shared_ptr<const PresentationAttributes>;

    explicit Cascade(std::span<const StyleSheet> styles);

    /// Where nothing is laid over an element's own attributes, these themselves. Throws XMLParserError::other when the
    /// elements asked for had more classes, all in all, than limits::classNames.
    [[nodiscard]] Attributes presentationAttributes(const GraphicsElement& element);
    [[nodiscard]] PresentationAttributes presentationAttributes(const Mask& mask);
    /// Of a document's root, which has neither class nor id.
    [[nodiscard]] PresentationAttributes presentationAttributes(const SVG& root);

private:
    using Kind = StyleSheet::Selector::Kind;
    /// A selector whose name lies in a sheet or an element.
    struct SelectorView {
        Kind kind;
        std::string_view name;
        auto operator<=>(const SelectorView&) const = default;
    };

    [[nodiscard]] Overlay makeAttributes(std::string_view elementName, std::string_view className, std::string_view id);
    void lay(Overlay& below, const SelectorView& selector) const;
    void layClasses(Overlay& below, std::string_view className);

    std::map<SelectorView, Overlay> rules_;  ///< all sheets laid over each other
    bool anyClasses_ = false;
    std::size_t classNames_ = 0;
};

}  // namespace sorvik::draw::dom
