#include "sorvikdraw/engine/text_placement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <variant>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/text_outlines.h"

namespace sorvik::draw::layer_tree {
namespace {

// What takes as long as a point of an outline.
constexpr std::size_t workOfText = 400;
constexpr std::size_t workOfLetter = 4;
constexpr std::size_t pointsOfSegment = 2;  // on an average

// How far a path reaches along x; the curve itself counts, not its control points.
class Extent {
public:
    void operator()(const PathSegment::Move& move) { include(move.to.x); }
    void operator()(const PathSegment::Line& line) { include(line.to.x); }
    void operator()(const PathSegment::Cubic& cubic) {
        const float start = current_;
        include(cubic.to.x);
        if (std::min(cubic.control1.x, cubic.control2.x) < least_ ||
            std::max(cubic.control1.x, cubic.control2.x) > most_) {
            includeTurns({static_cast<double>(start), static_cast<double>(cubic.control1.x),
                          static_cast<double>(cubic.control2.x), static_cast<double>(cubic.to.x)});
        }
    }
    void operator()(const PathSegment::Close&) {}

    [[nodiscard]] float least() const { return least_; }
    [[nodiscard]] float most() const { return most_; }

private:
    void include(float x) {
        current_ = x;
        least_ = std::min(least_, x);
        most_ = std::max(most_, x);
    }

    // Where a cubic turns back, its derivative a t^2 + b t + c is zero.
    void includeTurns(const std::array<double, 4>& p) {
        const double a = p[3] - 3 * p[2] + 3 * p[1] - p[0];
        const double b = 2 * (p[2] - 2 * p[1] + p[0]);
        const double c = p[1] - p[0];
        const double root = std::sqrt(b * b - 4 * a * c);
        const double q = -0.5 * (b + std::copysign(root, b));
        for (const double t : {q / a, c / q}) {
            if (t > 0 && t < 1) {
                const double s = 1 - t;
                const double x = s * s * s * p[0] + 3 * s * s * t * p[1] + 3 * s * t * t * p[2] + t * t * t * p[3];
                least_ = std::min(least_, static_cast<float>(x));
                most_ = std::max(most_, static_cast<float>(x));
            }
        }
    }

    float current_ = 0;
    float least_ = std::numeric_limits<float>::infinity();
    float most_ = -std::numeric_limits<float>::infinity();
};

}  // namespace

float offsetForAnchor(const Path& outline, dom::TextAnchor anchor) {
    if (outline.segments.empty()) {
        return 0;
    }
    Extent extent;
    for (const PathSegment& segment : outline.segments) {
        std::visit(extent, segment.value);
    }
    switch (anchor) {
        case dom::TextAnchor::start:
            return extent.least();
        case dom::TextAnchor::middle:
            return -(extent.least() + (extent.most() - extent.least()) / 2);
        case dom::TextAnchor::end:
            return -extent.most();
    }
    return 0;
}

float TextPlacement::offset(const std::string& text, const TextAttributes& attributes) {
    families_.insert(attributes.fontName);
    if (families_.size() > limits::fontFamilies) {
        throw LimitError("more than " + std::to_string(limits::fontFamilies) + " different fonts");
    }
    const Path outline = textOutline(text, attributes.fontName, attributes.size);
    work_ += workOfText + workOfLetter * text.size() + pointsOfSegment * outline.segments.size();
    if (work_ > limits::textWork) {
        throw LimitError("too large: it holds more text than can be drawn");
    }
    return offsetForAnchor(outline, attributes.anchor);
}

}  // namespace sorvik::draw::layer_tree
