#pragma once

#include <array>
#include <string_view>

#include "sorvikdraw/dom/presentation_attributes.h"

namespace sorvik::draw {

template <typename Enumeration>
struct RawValue {
    std::string_view text;
    Enumeration value;
};

/// How the values of an enumeration are written in a document.
template <typename Enumeration>
inline constexpr std::array<RawValue<Enumeration>, 0> rawValues{};

template <>
inline constexpr auto rawValues<dom::DisplayMode> = std::to_array<RawValue<dom::DisplayMode>>({
    {"none", dom::DisplayMode::none},
    {"inline", dom::DisplayMode::inlined},
    {"block", dom::DisplayMode::block},
});
template <>
inline constexpr auto rawValues<dom::FillRule> = std::to_array<RawValue<dom::FillRule>>({
    {"nonzero", dom::FillRule::nonzero},
    {"evenodd", dom::FillRule::evenodd},
});
template <>
inline constexpr auto rawValues<dom::LineCap> = std::to_array<RawValue<dom::LineCap>>({
    {"butt", dom::LineCap::butt},
    {"round", dom::LineCap::round},
    {"square", dom::LineCap::square},
});
template <>
inline constexpr auto rawValues<dom::LineJoin> = std::to_array<RawValue<dom::LineJoin>>({
    {"miter", dom::LineJoin::miter},
    {"round", dom::LineJoin::round},
    {"bevel", dom::LineJoin::bevel},
});
template <>
inline constexpr auto rawValues<dom::TextAnchor> = std::to_array<RawValue<dom::TextAnchor>>({
    {"start", dom::TextAnchor::start},
    {"middle", dom::TextAnchor::middle},
    {"end", dom::TextAnchor::end},
});
template <>
inline constexpr auto rawValues<dom::Units> = std::to_array<RawValue<dom::Units>>({
    {"userSpaceOnUse", dom::Units::userSpaceOnUse},
    {"objectBoundingBox", dom::Units::objectBoundingBox},
});

}  // namespace sorvik::draw
