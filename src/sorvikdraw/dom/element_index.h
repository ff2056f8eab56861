#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "sorvikdraw/dom/xml_element.h"

namespace sorvik::draw {

/// Where the elements that are looked for by name stand. One walk of the whole tree serves the searches of every "svg"
/// in it.
class ElementIndex {
public:
    enum class Name : std::uint8_t { clipPath, linearGradient, radialGradient, mask, pattern, filter, defs, style };
    static constexpr std::size_t names = 8;

    /// The places that an element and all inside it take in document order.
    struct Range {
        std::uint32_t begin = 0, end = 0;
    };
    struct Entry {
        const xml::Element* element = nullptr;
        Range range;

        /// The number of elements that it is, with all inside it.
        [[nodiscard]] std::size_t size() const { return range.end - range.begin; }
    };

    /// A search for the elements of one name inside another element, in document order. Good as long as the index.
    class Search {
    public:
        Search(std::span<const Entry> entries, bool nested) : entries_(entries), nested_(nested) {}
        /// The next one; null when there is none.
        [[nodiscard]] const Entry* next();

    private:
        std::span<const Entry> entries_;
        bool nested_;  ///< goes on inside what it found
        std::uint32_t from_ = 0;
    };

    /// `root` counts as an "svg".
    explicit ElementIndex(const xml::Element& root);

    /// What lies inside one that was found is not searched, unless they are styles. `svg` is one of the tree.
    [[nodiscard]] Search search(Name name, const xml::Element& svg) const;

private:
    struct Open;
    [[nodiscard]] Open enter(const xml::Element& element);
    void leave(const Open& open);

    std::uint32_t places_ = 0;
    std::array<std::vector<Entry>, names> entries_;
    std::unordered_map<const xml::Element*, Range> drawings_;
};

}  // namespace sorvik::draw
