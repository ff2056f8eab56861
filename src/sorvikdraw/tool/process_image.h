#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "sorvikdraw/engine/svg.h"
#include "sorvikdraw/tool/configuration.h"

namespace sorvik::draw::command_line {

/// Throws Error unless a regular file stands there, std::system_error when that can't be seen. Asked before anything
/// opens the file: a FIFO would be waited for, and a device has no end.
void requireInput(const std::filesystem::path& input);

/// The bytes of the output. Throws Error, with an empty sentence for a document that did not load, since the engine
/// has printed its line by then; DrawingError when the drawing can't be made.
[[nodiscard]] std::vector<std::byte> processImage(const Configuration& with);

/// The same for a loaded drawing and one of the formats that are drawn: jpeg, pdf, png.
[[nodiscard]] std::vector<std::byte> processImage(SVG svg, const Configuration& with);

[[nodiscard]] SVG::Options makeSVGOptions(const Configuration& configuration);

/// Throws Error (unsupported) when some sides are "auto" and others are not.
[[nodiscard]] SVG::Insets makeImageInsets(const Insets& insets);

}  // namespace sorvik::draw::command_line
