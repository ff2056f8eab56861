#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// How far a text is moved along its line for its anchor, measured by what of it is inked. 0 where nothing is.
[[nodiscard]] float offsetForAnchor(const Path& outline, dom::TextAnchor anchor);

/// Measures the texts of one document.
class TextPlacement {
public:
    /// Throws LimitError for texts and font families beyond limits.h, and what textOutline throws.
    [[nodiscard]] float offset(const std::string& text, const TextAttributes& attributes);

private:
    std::unordered_set<std::string> families_;  // a few hundred at most
    std::size_t work_ = 0;
};

}  // namespace sorvik::draw::layer_tree
