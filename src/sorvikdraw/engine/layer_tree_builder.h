#pragma once

#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// Turns a document into layers.
class Builder {
public:
    /// `svg` must outlive the builder, not what it makes.
    explicit Builder(const dom::SVG& svg) : svg_(svg) {}

    /// Throws DrawingError for a `use` of what is not there or of itself, for a picture that is none, and for text
    /// when the library that knows fonts is missing; LimitError for a drawing beyond limits.h and for patterns and
    /// masks that refer to themselves; XMLParserError for more class names than limits.h allows.
    [[nodiscard]] Tree makeLayer();

private:
    const dom::SVG& svg_;
};

}  // namespace sorvik::draw::layer_tree
