#include "sorvikdraw/dom/element_index.h"

#include <algorithm>
#include <string_view>

namespace sorvik::draw {
namespace {

// In the order of ElementIndex::Name.
constexpr std::array<std::string_view, ElementIndex::names> texts{
    "clipPath", "linearGradient", "radialGradient", "mask", "pattern", "filter", "defs", "style"};
static_assert(texts[static_cast<std::size_t>(ElementIndex::Name::style)] == "style");

}  // namespace

struct ElementIndex::Open {
    const xml::Element* nextChild = nullptr;
    std::uint32_t* end = nullptr;         ///< of an "svg"
    std::size_t name = names, entry = 0;  ///< of one that is looked for
};

ElementIndex::ElementIndex(const xml::Element& root) {
    std::vector<Open> open{enter(root)};
    while (!open.empty()) {
        const xml::Element* const child = open.back().nextChild;
        if (child == nullptr) {
            leave(open.back());
            open.pop_back();
        } else {
            open.back().nextChild = child->nextSibling;
            open.push_back(enter(*child));
        }
    }
    drawings_[&root] = {0, places_};
}

ElementIndex::Open ElementIndex::enter(const xml::Element& element) {
    const std::uint32_t place = places_++;
    Open open{.nextChild = element.firstChild};
    if (element.name == "svg") {
        Range& range = drawings_[&element];
        range.begin = place;
        open.end = &range.end;
        return open;
    }
    const auto text = std::ranges::find(texts, element.name);
    if (text != texts.end()) {
        open.name = static_cast<std::size_t>(text - texts.begin());
        open.entry = entries_.at(open.name).size();
        entries_.at(open.name).push_back({&element, {place, place}});
    }
    return open;
}

void ElementIndex::leave(const Open& open) {
    if (open.end != nullptr) {
        *open.end = places_;
    } else if (open.name < names) {
        entries_.at(open.name)[open.entry].range.end = places_;
    }
}

ElementIndex::Search ElementIndex::search(Name name, const xml::Element& svg) const {
    const Range inside = drawings_.at(&svg);
    const std::span<const Entry> all = entries_.at(static_cast<std::size_t>(name));
    const auto place = [](const Entry& entry) { return entry.range.begin; };
    const auto first = std::ranges::upper_bound(all, inside.begin, {}, place);
    const auto last = std::ranges::lower_bound(first, all.end(), inside.end, {}, place);
    return {{first, last}, name == Name::style};
}

const ElementIndex::Entry* ElementIndex::Search::next() {
    while (!entries_.empty()) {
        const Entry& entry = entries_.front();
        entries_ = entries_.subspan(1);
        if (nested_ || entry.range.begin >= from_) {
            from_ = entry.range.end;
            return &entry;
        }
    }
    return nullptr;
}

}  // namespace sorvik::draw
