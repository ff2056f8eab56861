#pragma once

#include <cstdint>

namespace sorvik::draw::layer_tree {

/// Who hears the warnings, and so how options are spelled in them.
enum class Caller : std::uint8_t { library, tool };

// Lines on standard output.
void warnOfUnsupportedFilter(Caller caller);
void warnOfTransparentStops();

}  // namespace sorvik::draw::layer_tree
