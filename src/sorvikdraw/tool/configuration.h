#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "sorvikdraw/engine/svg.h"

namespace sorvik::draw::sf_symbol_renderer {

enum class SizeCategory : std::uint8_t { small, medium, large };

}  // namespace sorvik::draw::sf_symbol_renderer

namespace sorvik::draw::command_line {

enum class Format : std::uint8_t { jpeg, pdf, png, swift, sfsymbol };
enum class API : std::uint8_t { appkit, uikit };
enum class Scale : std::uint8_t { normal, retina, superRetina };

struct FormatRow {
    Format format;
    std::string_view text;
    std::string_view suffix;  ///< of an output's name that was not given
    std::string_view extension;
};

struct APIRow {
    API api;
    std::string_view text;
};

struct ScaleRow {
    Scale scale;
    std::string_view text;
    double number;               ///< pixels a user unit
    std::string_view pngSuffix;  ///< of a PNG's name that was not given
};

struct SizeCategoryRow {
    sf_symbol_renderer::SizeCategory category;
    std::string_view text;
};

inline constexpr std::array formats{
    FormatRow{Format::jpeg, "jpeg", "", "jpg"},
    FormatRow{Format::pdf, "pdf", "", "pdf"},
    FormatRow{Format::png, "png", "", "png"},
    FormatRow{Format::swift, "swift", "", "swift"},
    FormatRow{Format::sfsymbol, "sfsymbol", "-symbol", "svg"},
};
static_assert(formats.size() == static_cast<std::size_t>(Format::sfsymbol) + 1);

inline constexpr std::array apis{APIRow{API::appkit, "appkit"}, APIRow{API::uikit, "uikit"}};
static_assert(apis.size() == static_cast<std::size_t>(API::uikit) + 1);

inline constexpr std::array scales{
    ScaleRow{Scale::normal, "1x", 1.0, ""},
    ScaleRow{Scale::retina, "2x", 2.0, "@2x"},
    ScaleRow{Scale::superRetina, "3x", 3.0, "@3x"},
};
static_assert(scales.size() == static_cast<std::size_t>(Scale::superRetina) + 1);

inline constexpr std::array sizeCategories{
    SizeCategoryRow{sf_symbol_renderer::SizeCategory::small, "small"},
    SizeCategoryRow{sf_symbol_renderer::SizeCategory::medium, "medium"},
    SizeCategoryRow{sf_symbol_renderer::SizeCategory::large, "large"},
};
static_assert(sizeCategories.size() == static_cast<std::size_t>(sf_symbol_renderer::SizeCategory::large) + 1);

[[nodiscard]] constexpr const FormatRow& row(Format format) { return formats.at(static_cast<std::size_t>(format)); }
[[nodiscard]] constexpr const ScaleRow& row(Scale scale) { return scales.at(static_cast<std::size_t>(scale)); }

/// User units, 1 or more.
struct Size {
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool operator==(const Size&) const = default;
};

/// User units; an absent side is "auto".
struct Insets {
    std::optional<double> top, left, bottom, right;
    bool operator==(const Insets&) const = default;
};

/// One run of the tool. Paths are absolute and standardised.
struct Configuration {
    std::filesystem::path input;
    std::optional<std::filesystem::path> inputUltralight;
    std::optional<std::filesystem::path> inputBlack;
    std::filesystem::path output;
    Format format = Format::png;
    std::optional<Size> size;  ///< absent: the drawing's own
    std::optional<API> api;
    Insets insets;
    std::optional<Insets> insetsUltralight;
    std::optional<Insets> insetsBlack;
    Scale scale = Scale::normal;
    SVG::Options options = SVG::defaultOptions;
    std::optional<std::int64_t> precision;  ///< digits behind the point
    std::optional<sf_symbol_renderer::SizeCategory> symbolSize;
    bool isLegacyInsetsEnabled = false;
    bool operator==(const Configuration&) const = default;
};

}  // namespace sorvik::draw::command_line
