#include "sorvikdraw/dom/presentation_fields.h"

#include <bit>

namespace sorvik::draw::dom {

namespace {

using Copy = void (*)(PresentationAttributes& to, const PresentationAttributes& from);

template <std::size_t... index>
constexpr std::array<Copy, presentationFields> copies(std::index_sequence<index...>) {
    return {[](PresentationAttributes& to, const PresentationAttributes& from) {
        std::get<index>(fieldsOf(to)) = std::get<index>(fieldsOf(from));
    }...};
}

constexpr auto copyField = copies(std::make_index_sequence<presentationFields>());

template <typename Visit>
void forEachBit(std::uint32_t bits, Visit visit) {
    for (; bits != 0; bits &= bits - 1) {
        visit(static_cast<std::size_t>(std::countr_zero(bits)));
    }
}

}  // namespace

std::uint32_t setFields(const PresentationAttributes& attributes) {
    return std::apply(
        [](const auto&... field) {
            std::uint32_t set = 0;
            std::uint32_t bit = 1;
            ((set |= field.has_value() ? bit : 0, bit <<= 1U), ...);
            return set;
        },
        fieldsOf(attributes));
}

void Overlay::lay(const PresentationAttributes& over) {
    const auto fields = setFields(over);
    forEachBit(fields, [&](std::size_t field) { sources_[field] = &over; });
    set_ |= fields;
}

void Overlay::lay(const Overlay& over) {
    forEachBit(over.set_, [&](std::size_t field) { sources_[field] = over.sources_[field]; });
    set_ |= over.set_;
}

void Overlay::applyTo(PresentationAttributes& attributes) const {
    forEachBit(set_, [&](std::size_t field) { copyField[field](attributes, *sources_[field]); });
}

}  // namespace sorvik::draw::dom
