#include "sorvikdraw/engine/svg.h"

#include <utility>

namespace sorvik::draw {

SVG::SVG(Size size, CGCommands commands) : size_(size), commands_(std::move(commands)) {}

}  // namespace sorvik::draw
