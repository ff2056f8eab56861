#include "sorvikdraw/engine/gradient_source.h"

#include <cmath>

namespace sorvik::draw {
namespace {

using layer_tree::Point;

// Beyond it the rasteriser's numbers end; so far off the canvas a gradient has only one colour on it, nearly.
constexpr double farthest = 1e9;
// Shorter ones would be rounded to nothing, where they should be an edge between two colours.
constexpr double shortest = 1.0 / 64;

bool isUsable(Vector p) { return std::abs(p.x) < farthest && std::abs(p.y) < farthest; }

PatternHandle solid(const CGColor& color, double alpha) {
    return PatternHandle(cairo_pattern_create_rgba(static_cast<double>(color.r), static_cast<double>(color.g),
                                                   static_cast<double>(color.b), static_cast<double>(color.a) * alpha));
}

void addStops(cairo_pattern_t* pattern, const CGGradient& gradient, double alpha) {
    double offset = 0;
    for (const auto& stop : gradient.stops) {
        offset = std::max(offset, std::min(static_cast<double>(stop.offset), 1.0));
        const CGColor& color = stop.color;
        cairo_pattern_add_color_stop_rgba(pattern, offset, static_cast<double>(color.r), static_cast<double>(color.g),
                                          static_cast<double>(color.b), static_cast<double>(color.a) * alpha);
    }
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
}

}  // namespace

PatternHandle linearSource(const CGGradient& gradient, Point from, Point to, const Affine& toDevice, double alpha) {
    if (gradient.stops.empty() || !toDevice.invertible()) {
        return nullptr;
    }
    if (from == to) {
        return solid(gradient.stops.back().color, alpha);
    }
    // Lines of one colour stay lines but no longer cross the way from start to end at right angles: the end moves
    // along them to where they do.
    const Affine back = toDevice.inverse();
    const double dx = static_cast<double>(to.x) - static_cast<double>(from.x);
    const double dy = static_cast<double>(to.y) - static_cast<double>(from.y);
    const Vector slope{back.a * dx + back.b * dy, back.c * dx + back.d * dy};
    const double scale = (dx * dx + dy * dy) / (slope.x * slope.x + slope.y * slope.y);
    Vector along{slope.x * scale, slope.y * scale};
    const double length = std::hypot(along.x, along.y);
    if (length < shortest && length > 0) {
        along = {along.x / length * shortest, along.y / length * shortest};
    }
    const Vector start = toDevice(from);
    const Vector end{start.x + along.x, start.y + along.y};
    if (!isUsable(start) || !isUsable(end) || !(length > 0)) {
        return nullptr;
    }
    PatternHandle pattern(cairo_pattern_create_linear(start.x, start.y, end.x, end.y));
    addStops(pattern.get(), gradient, alpha);
    return pattern;
}

PatternHandle radialSource(const CGGradient& gradient, const CGCommand::DrawRadialGradient::Circles& circles,
                           const Affine& toDevice, double alpha) {
    const auto& [startCenter, startRadius, endCenter, endRadius] = circles;
    if (gradient.stops.empty() || !toDevice.invertible()) {
        return nullptr;
    }
    if (!(endRadius > 0) || (startCenter == endCenter && startRadius == endRadius)) {
        return solid(gradient.stops.back().color, alpha);
    }
    // In a space of circles with the device's measure, for the sake of the rasteriser's fixed-point numbers.
    const double unit = std::sqrt(std::abs(toDevice.determinant()));
    const Affine measured = Affine::scaling(unit, unit);
    const Vector start = measured(startCenter);
    const Vector end = measured(endCenter);
    const double radius = unit * static_cast<double>(endRadius);
    const double inner = unit * std::max(0.0, static_cast<double>(startRadius));
    if (!isUsable(start) || !isUsable(end) || !isUsable({radius, inner})) {
        return nullptr;
    }
    PatternHandle pattern(cairo_pattern_create_radial(start.x, start.y, inner, end.x, end.y, radius));
    addStops(pattern.get(), gradient, alpha);
    const cairo_matrix_t matrix = cairoMatrix(measured * toDevice.inverse());
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    return pattern;
}

}  // namespace sorvik::draw
