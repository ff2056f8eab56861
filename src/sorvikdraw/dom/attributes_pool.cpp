#include "sorvikdraw/dom/attributes_pool.h"

#include "sorvikdraw/dom/presentation_attributes_parser.h"

namespace sorvik::draw {
namespace {

// Longer ones say what no other element says, and there is an end to those that are kept.
constexpr std::size_t longestKey = 256;
constexpr std::size_t mostKnown = 4096;

const AttributesPool::Shared& nothing() {
    static const AttributesPool::Shared empty = std::make_shared<const dom::PresentationAttributes>();
    return empty;
}

// Names as numbers; a text of XML holds no zero.
void writeKey(std::string& key, std::span<const xml::Attribute> attributes) {
    key.clear();
    for (const auto& [name, value] : attributes) {
        if (const auto index = presentationAttributeIndex(name)) {
            key += static_cast<char>(*index);
            key.append(value.substr(0, longestKey)) += '\0';
        }
    }
}

std::size_t heapBytes(const dom::PresentationAttributes& attributes) {
    return (attributes.transform ? attributes.transform->capacity() * sizeof(dom::Transform) : 0) +
           (attributes.strokeDashArray ? attributes.strokeDashArray->capacity() * sizeof(float) : 0) +
           (attributes.fontFamily ? attributes.fontFamily->capacity() : 0);
}

}  // namespace

AttributesPool::Shared AttributesPool::ofElement(const StyledAttributes& attributes) {
    writeKey(key_, attributes.element());
    return key_.empty() ? nothing() : find(key_, attributes.element());
}

AttributesPool::Shared AttributesPool::ofStyle(const StyledAttributes& attributes) {
    return attributes.style().empty() ? nothing() : find(attributes.styleText(), attributes.style());
}

AttributesPool::Shared AttributesPool::find(std::string_view key, std::span<const xml::Attribute> pairs) {
    if (key.size() > longestKey) {
        return parse(pairs);
    }
    std::string text(key);
    if (const auto known = known_.find(text); known != known_.end()) {
        return known->second;
    }
    if (known_.size() == mostKnown) {
        known_.clear();
    }
    return known_.emplace(std::move(text), parse(pairs)).first->second;
}

AttributesPool::Shared AttributesPool::parse(std::span<const xml::Attribute> pairs) {
    auto attributes =
        std::make_shared<const dom::PresentationAttributes>(parsePresentationAttributes(pairs, {}, options_));
    budget_.spend(sizeof(dom::PresentationAttributes) + heapBytes(*attributes));
    return attributes;
}

}  // namespace sorvik::draw
