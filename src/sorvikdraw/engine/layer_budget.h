#pragma once

#include <cstddef>
#include <string>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw::layer_tree {

/// What the layers of a document cost, about. Both throw LimitError when a document has used up what it may.
class LayerBudget {
public:
    /// For memory, and for names that are looked up.
    void spend(std::size_t bytes) {
        bytes_ += bytes;
        if (bytes_ > limits::layerBytes) {
            throw LimitError("too large: its drawing takes more than " + std::to_string(limits::layerBytes >> 20U) +
                             " MB of memory");
        }
    }

    /// For a layer that stands there because something refers to it.
    void expand() {
        if (++expansions_ > limits::expansions) {
            throw LimitError("too large: its references come to more than " + std::to_string(limits::expansions) +
                             " elements");
        }
    }

private:
    std::size_t bytes_ = 0;
    std::size_t expansions_ = 0;
};

}  // namespace sorvik::draw::layer_tree
