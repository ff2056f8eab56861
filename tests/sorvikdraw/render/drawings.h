#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "sorvikdraw/engine/raster_output.h"

/// Command lists in few words.
namespace sorvik::draw::testing {

using C = CGCommand;

inline constexpr CGColor red{1, 0, 0, 1};
inline constexpr CGColor green{0, 1, 0, 1};
inline constexpr CGColor blue{0, 0, 1, 1};
inline constexpr CGColor black{0, 0, 0, 1};

// Pixels as Raster has them.
inline constexpr std::uint32_t redPixel = 0xFFFF0000;
inline constexpr std::uint32_t greenPixel = 0xFF00FF00;
inline constexpr std::uint32_t bluePixel = 0xFF0000FF;

[[nodiscard]] CGTypes::Path polygon(std::initializer_list<layer_tree::Point> corners);
[[nodiscard]] CGTypes::Path rectangle(float x, float y, float width, float height);
[[nodiscard]] CGTypes::Path polyline(std::initializer_list<layer_tree::Point> points);
[[nodiscard]] CGTypes::Gradient gradient(CGColor first, CGColor last);
[[nodiscard]] CGTypes::Pattern pattern(layer_tree::Rect bounds, std::initializer_list<C> contents);

[[nodiscard]] C fill(CGTypes::Path path);
[[nodiscard]] C clip(CGTypes::Path path);
[[nodiscard]] C matrix(float a, float b, float c, float d, float tx, float ty);
[[nodiscard]] C radial(CGTypes::Gradient gradient, C::DrawRadialGradient::Circles circles);

template <typename Command>
C command(Command value) {
    return C{std::move(value)};
}
inline const C push = command(C::PushState{});
inline const C pop = command(C::PopState{});
inline const C pushLayer = command(C::PushTransparencyLayer{});
inline const C popLayer = command(C::PopTransparencyLayer{});
[[nodiscard]] inline C setFill(CGColor color) { return command(C::SetFill{color}); }
[[nodiscard]] inline C setStroke(CGColor color) { return command(C::SetStroke{color}); }
[[nodiscard]] inline C setAlpha(float alpha) { return command(C::SetAlpha{alpha}); }
[[nodiscard]] inline C setBlend(BlendMode mode) { return command(C::SetBlend{mode}); }
[[nodiscard]] inline C setLine(float width) { return command(C::SetLine{width}); }
[[nodiscard]] inline C stroke(CGTypes::Path path) { return command(C::Stroke{std::move(path)}); }
[[nodiscard]] inline C clipStroke(CGTypes::Path path) { return command(C::ClipStrokeOutline{std::move(path)}); }
[[nodiscard]] inline C translate(float x, float y) { return command(C::Translate{x, y}); }
[[nodiscard]] inline C scale(float x, float y) { return command(C::Scale{x, y}); }
[[nodiscard]] inline C linear(CGTypes::Gradient gradient, layer_tree::Point from, layer_tree::Point to) {
    return command(C::DrawLinearGradient{std::move(gradient), from, to});
}

[[nodiscard]] CGCommands joined(std::initializer_list<CGCommands> lists);

/// The list played on a transparent canvas.
[[nodiscard]] Raster drawn(CGCommands commands, int width, int height, int bands = 1);

/// What a pixel is that can't be predicted to the last bit: true within `tolerance` of each channel.
[[nodiscard]] bool isNear(std::uint32_t pixel, std::uint32_t expected, int tolerance);

[[nodiscard]] std::vector<std::uint32_t> pixelsOf(const Raster& raster);

}  // namespace sorvik::draw::testing
