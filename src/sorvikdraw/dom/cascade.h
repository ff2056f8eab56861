#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>

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
    struct Name {
        StyleSheet::Selector::Kind kind;
        std::string_view name;
        bool operator==(const Name&) const = default;
    };
    struct NameHash {
        std::size_t operator()(const Name& name) const;
    };
    using Kind = StyleSheet::Selector::Kind;

    void lay(Overlay& over, Kind kind, std::string_view name) const;
    void layClasses(Overlay& over, std::string_view className);
    [[nodiscard]] Overlay overlay(std::string_view elementName, std::string_view className, std::string_view id);

    std::unordered_map<Name, Overlay, NameHash> rules_;  ///< all sheets laid over each other
    bool anyClasses_ = false;
    std::size_t classNames_ = 0;
};

}  // namespace sorvik::draw::dom
