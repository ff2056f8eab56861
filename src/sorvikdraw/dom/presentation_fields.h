#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>

#include "sorvikdraw/dom/presentation_attributes.h"

namespace sorvik::draw::dom {

/// References to all fields in their order. A field more or less in the record does not compile here.
template <typename Attributes>
[[nodiscard]] constexpr auto fieldsOf(Attributes& attributes) {
    auto& [opacity, display, color, stroke, strokeWidth, strokeOpacity, strokeLineCap, strokeLineJoin, strokeDashArray,
           fill, fillOpacity, fillRule, fontFamily, fontSize, textAnchor, transform, clipPath, clipRule, mask, filter] =
        attributes;
    return std::tie(opacity, display, color, stroke, strokeWidth, strokeOpacity, strokeLineCap, strokeLineJoin,
                    strokeDashArray, fill, fillOpacity, fillRule, fontFamily, fontSize, textAnchor, transform, clipPath,
                    clipRule, mask, filter);
}

inline constexpr std::size_t presentationFields =
    std::tuple_size_v<decltype(fieldsOf(std::declval<PresentationAttributes&>()))>;

/// A bit for each field that says something, the first field's lowest.
[[nodiscard]] std::uint32_t setFields(const PresentationAttributes& attributes);

/// Records laid over each other, without copying any: who has the last word on each field. It refers to them.
class Overlay {
public:
    void lay(const PresentationAttributes& over);
    void lay(const Overlay& over);
    [[nodiscard]] bool empty() const { return set_ == 0; }
    /// Puts all of it into `attributes`.
    void applyTo(PresentationAttributes& attributes) const;

private:
    std::array<const PresentationAttributes*, presentationFields> sources_{};
    std::uint32_t set_ = 0;
};

}  // namespace sorvik::draw::dom
