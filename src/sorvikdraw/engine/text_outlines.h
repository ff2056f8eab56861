#pragma once

#include <string>
#include <vector>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw {

/// The outline of a string set on one line from (0, 0), y growing downward, in user units. Bidirectional text, font
/// fallback and kerning included. `fontName` is a family or a list of families; one that is not installed is replaced.
/// Control characters and unknown glyphs cost nothing but their place. Empty where nothing is inked.
///
/// The library that knows fonts is loaded at the first call, not before: most drawings hold no text. Throws
/// DrawingError when it can't be loaded. Safe to call from several threads.
[[nodiscard]] layer_tree::Path textOutline(const std::string& text, const std::string& fontName, float size);

}  // namespace sorvik::draw
