#include "departures.h"

#include <algorithm>
#include <array>

namespace sorvik::draw::test {

namespace {

struct Departure {
    std::string_view drawing;  ///< without "departs-"
    std::string_view reason;
};

// In the order of the names.
constexpr std::array departures = {
    Departure{"arc-zero-radius", "an arc without a radius adds nothing instead of a line"},
    Departure{"blur", "filters are left out"},
    Departure{"clip-box-units", "clip paths are in user units always"},
    Departure{"clip-empty", "a clip path without shapes clips nothing instead of everything"},
    Departure{"clip-of-use", "only shapes themselves clip"},
    Departure{"clip-own-transform", "the clip path's own transform is not used"},
    Departure{"clip-rule-on-clip-shape", "the rule is that of the element clipped"},
    Departure{"color-display-p3", "the other program knows no P3 colours"},
    Departure{"dashes", "dashes are not drawn"},
    Departure{"foreign-namespace", "children of a foreign element are adopted"},
    Departure{"gradient-box-of-wide-diagonal", "a gradient's normal is not skewed with the box"},
    Departure{"gradient-box-transform",
              "the gradient's transform is in user space even when its points are in the box"},
    Departure{"gradient-box-turned", "the box is the shape's own; the other program takes that of the turned shape"},
    Departure{"gradient-current-color", "stops know no current colour"},
    Departure{"gradient-href-chain", "references are followed one step"},
    Departure{"gradient-href-geometry", "only stops are taken from the gradient referred to"},
    Departure{"gradient-href-other-kind", "references lead to gradients of the same kind only"},
    Departure{"gradient-href-over-own-stops", "the stops referred to win over the gradient's own"},
    Departure{"gradient-percent-coordinates", "a percent sign after a coordinate is ignored"},
    Departure{"gradient-radial-box-of-wide", "a radius is not stretched with the box"},
    Departure{"gradient-same-points", "a gradient without length is its last colour, not the mean of all"},
    Departure{"gradient-single-stop", "a gradient of one stop is none"},
    Departure{"gradient-spread", "gradients are neither reflected nor repeated"},
    Departure{"gradient-stroke-opacity", "stroke-opacity does not reach gradients"},
    Departure{"hex-eight-digits", "only the last six digits count"},
    Departure{"hex-two-digits", "short numbers are filled up with zeros in front"},
    Departure{"image-aspect", "pictures are stretched into their rectangle"},
    Departure{"lengths-em", "units of fonts are ignored"},
    Departure{"lengths-percent", "a percent sign after a coordinate is ignored"},
    Departure{"mask-box-units", "masks are in user units always"},
    Departure{"mask-region", "masks have no region"},
    Departure{"mask-translucent-overlap", "within masks, what comes later replaces what is there"},
    Departure{"mask-with-clip-edges", "a clip's edge is smoothed once; under a mask the other program does it twice"},
    Departure{"miter-limit", "it is 4 always"},
    Departure{"pattern-box-units", "patterns are in user units always"},
    Departure{"pattern-fill-opacity", "fill-opacity does not reach patterns"},
    Departure{"pattern-place", "tiles start at the origin"},
    Departure{"pattern-stroke", "strokes have no patterns"},
    Departure{"relative-after-close", "closing does not move the current point"},
    Departure{"root-place", "x and y move the outermost element too"},
    Departure{"root-size-truncated", "sizes are whole numbers"},
    Departure{"smooth-after-arc", "arcs are cubics, and are continued as such"},
    Departure{"smooth-cubic-after-quadratic", "quadratics are cubics, and are continued as such"},
    Departure{"smooth-quadratic-after-cubic", "cubics are continued by smooth quadratics too"},
    Departure{"style-bad-value", "one bad value drops its sheet"},
    Departure{"style-class-order", "the class that comes last in the attribute wins"},
    Departure{"style-combinator", "selectors are single names"},
    Departure{"style-important", "!important makes the value a bad one"},
    Departure{"style-two-comments", "what lies between two comments of a line is lost"},
    Departure{"svg-nested-aspect", "inner drawings are stretched into their rectangle"},
    Departure{"svg-nested-overflow", "inner drawings are not clipped"},
    Departure{"switch-features", "the first child is drawn unseen"},
    Departure{"text-bold", "weights are not read"},
    Departure{"text-gradient", "text is filled with colours only"},
    Departure{"text-side-bearing", "the outline's left edge counts twice"},
    Departure{"text-stroke", "text is not stroked"},
    Departure{"tspan", "spans have no paint of their own"},
    Departure{"use-of-later-in-defs-first", "definitions are found before what is drawn"},
    Departure{"viewbox-aspect", "drawings are stretched into their rectangle"},
    Departure{"visibility", "only display hides"},
};

constexpr std::string_view prefix = "departs-";

}  // namespace

std::optional<std::string_view> departure(std::string_view drawing) {
    for (const Departure& departure : departures) {
        if (drawing.starts_with(prefix) && drawing.substr(prefix.size()) == departure.drawing) {
            return departure.reason;
        }
    }
    return std::nullopt;
}

std::vector<std::string> departureNames() {
    std::vector<std::string> names;
    for (const Departure& departure : departures) {
        names.push_back(std::string(prefix).append(departure.drawing));
    }
    return names;
}

}  // namespace sorvik::draw::test
