#pragma once

#include <cstddef>
#include <vector>

#include "sorvikdraw/engine/svg.h"

namespace sorvik::draw {

/// A document of one page; see SVG::pdfData.
[[nodiscard]] std::vector<std::byte> pdfDocument(const SVG& svg);

}  // namespace sorvik::draw
