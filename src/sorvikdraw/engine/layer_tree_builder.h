#pragma once

#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw::layer_tree {

/// Turns a document into layers.
class Builder {
public:
    /// `svg` must outlive the builder, not what it makes.
    explicit Builder(const dom::SVG& svg) : svg_(svg) {}

    /// Throws DrawingError for a `use` of what is not there and for a picture that is none, LimitError for
    /// expansions beyond all bounds.
    [[nodiscard]] Tree makeLayer();

private:
    const dom::SVG& svg_;
};

}  // namespace sorvik::draw::layer_tree
