#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "sorvikdraw/dom/memory_budget.h"
#include "sorvikdraw/dom/presentation_attributes.h"
#include "sorvikdraw/dom/styled_attributes.h"

namespace sorvik::draw {

/// Reads the presentation attributes of a document's elements. Those that say the same share one record, as far as
/// that is easily seen: drawings repeat themselves.
class AttributesPool {
public:
    using Shared = std::shared_ptr<const dom::PresentationAttributes>;

    /// `budget` outlives the pool.
    AttributesPool(XMLParserOptions options, MemoryBudget& budget) : options_(options), budget_(budget) {}

    /// Of the element's own attributes alone, and of its `style` alone. Never null.
    [[nodiscard]] Shared ofElement(const StyledAttributes& attributes);
    [[nodiscard]] Shared ofStyle(const StyledAttributes& attributes);

private:
    [[nodiscard]] Shared parse(std::span<const xml::Attribute> pairs);
    [[nodiscard]] Shared find(std::string_view key, std::span<const xml::Attribute> pairs);

    XMLParserOptions options_;
    MemoryBudget& budget_;
    std::unordered_map<std::string, Shared> known_;
    std::string key_;
};

}  // namespace sorvik::draw
