#include "sorvikdraw/engine/generator_warnings.h"

#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

namespace sorvik::draw::layer_tree {
namespace {

constexpr std::string_view spelling(Caller caller) {
    return caller == Caller::tool ? "[--hideUnsupportedFilters]"
                                  : "NSImage(svgNamed:, options: .hideUnsupportedFilters)";
}

// The pieces with a blank between them.
void print(std::initializer_list<std::string_view> pieces) {
    std::string line;
    for (const std::string_view piece : pieces) {
        line.append(line.empty() ? "" : " ").append(piece);
    }
    line += '\n';
    std::fputs(line.c_str(), stdout);
}

}  // namespace

void warnOfUnsupportedFilter(Caller caller) {
    print({"Warning:", "<feGaussianBlur>", "is not supported. Elements with this filter can be hidden with",
           spelling(caller)});
}

void warnOfTransparentStops() { print({"Warning:", "PDF does not support gradients with stop-opacity"}); }

}  // namespace sorvik::draw::layer_tree
