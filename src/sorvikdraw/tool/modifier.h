#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace sorvik::draw::command_line {

enum class Modifier : std::uint8_t {
    format,
    output,
    size,
    insets,
    scale,
    precision,
    api,
    ultralight,
    ultralightInsets,
    black,
    blackInsets,
    hideUnsupportedFilters,
    legacy,
};

/// An option: its spellings without the leading dashes, and what the help text says of it.
struct ModifierRow {
    Modifier modifier;
    std::string_view name;
    std::string_view otherName;  ///< empty without one
    std::string_view value;      ///< what stands for its value in the help text; empty when it takes none
    std::string_view help;
};

inline constexpr std::array modifiers{
    ModifierRow{Modifier::format, "format", "", "FORMAT",
                "What to make: jpeg, pdf, png, swift or sfsymbol. Always needed."},
    ModifierRow{Modifier::output, "output", "", "FILE", "Where to put it, instead of beside the input."},
    ModifierRow{Modifier::size, "size", "", "SIZE",
                "WIDTHxHEIGHT, to which the drawing is stretched; for sfsymbol small, medium or large."},
    ModifierRow{
        Modifier::insets, "insets", "", "INSETS",
        "TOP,LEFT,BOTTOM,RIGHT, by which the picture grows on each side; each a number or auto, or auto alone."},
    ModifierRow{Modifier::scale, "scale", "", "SCALE", "1x, 2x or 3x: pixels for each unit of the drawing."},
    ModifierRow{Modifier::precision, "precision", "", "DIGITS", "Digits behind the point in swift and sfsymbol."},
    ModifierRow{Modifier::api, "api", "", "API", "appkit or uikit, for swift."},
    ModifierRow{Modifier::ultralight, "ultralight", "", "FILE", "The ultralight drawing of a sfsymbol."},
    ModifierRow{Modifier::ultralightInsets, "ultralightInsets", "ultralight-insets", "INSETS", "Its insets."},
    ModifierRow{Modifier::black, "black", "", "FILE", "The black drawing of a sfsymbol."},
    ModifierRow{Modifier::blackInsets, "blackInsets", "black-insets", "INSETS", "Its insets."},
    ModifierRow{Modifier::hideUnsupportedFilters, "hideUnsupportedFilters", "hide-unsupported-filters", "",
                "Leave elements with a filter out that can't be drawn, instead of drawing them without it."},
    ModifierRow{Modifier::legacy, "legacy", "", "", "Insets of a sfsymbol as earlier versions took them."},
};
inline constexpr std::size_t modifierCount = modifiers.size();
static_assert(modifierCount == static_cast<std::size_t>(Modifier::legacy) + 1);
static_assert(std::ranges::is_sorted(modifiers, {}, &ModifierRow::modifier));

/// The row of an argument such as "--size"; null for anything else.
[[nodiscard]] constexpr const ModifierRow* findModifier(std::string_view argument) {
    if (!argument.starts_with("--") || argument.size() == 2) {
        return nullptr;
    }
    const std::string_view name = argument.substr(2);
    const auto* found = std::ranges::find_if(
        modifiers, [&](const ModifierRow& row) { return row.name == name || row.otherName == name; });
    return found == modifiers.end() ? nullptr : found;
}

}  // namespace sorvik::draw::command_line
