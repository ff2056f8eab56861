#include "sorvikdraw/engine/path_drawing.h"

#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include "sorvikdraw/dom/limits.h"

namespace sorvik::draw {
namespace {

using layer_tree::Point;
using Verb = CGPath::Verb;

constexpr double reach = limits::deviceCoordinate;
constexpr Box reachable{-reach, -reach, reach, reach};
// Half of it, and how far corners may stand out, so that no edge is longer than those of paths.
constexpr double widestPen = 1.3 * reach;
constexpr double farthestCorner = 2.6 * reach;

// The context's measure of how round a pen is; wide pens need no more corners than this keeps.
constexpr double tolerance = 0.1;
constexpr double thinnestPen = 2e-4;  // pixels
constexpr double flattestPen = 1e-5;  // its least width to its greatest
constexpr double toleranceOfWidePens = 1e-4;

constexpr std::size_t pointsOf(Verb verb) {
    switch (verb) {
        case Verb::move:
        case Verb::line:
            return 1;
        case Verb::cubic:
            return 3;
        case Verb::close:
            return 0;
    }
    return 0;
}

class NearPath {
public:
    NearPath(cairo_t* context, const Affine& toDevice) : context_(context), toDevice_(toDevice) {}

    void move(Vector to) { cairo_move_to(context_, to.x, to.y); }
    void line(Vector to) { cairo_line_to(context_, to.x, to.y); }
    void cubic(Vector c1, Vector c2, Vector to) { cairo_curve_to(context_, c1.x, c1.y, c2.x, c2.y, to.x, to.y); }
    void close() { cairo_close_path(context_); }
    [[nodiscard]] Vector mapped(Point p) const { return toDevice_(p); }

private:
    cairo_t* context_;
    const Affine& toDevice_;
};

Vector between(Vector from, Vector to, double t) {
    return {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)};
}

// Moves what lies beyond the reachable box onto its border. Lines are broken where they pass the border's lines, so
// that nothing within the box changes, winding numbers included.
class FarPath {
public:
    FarPath(cairo_t* context, const Affine& toDevice) : context_(context), toDevice_(toDevice) {}

    void move(Vector to) {
        current_ = start_ = to;
        const auto [x, y] = clamped(to);
        cairo_move_to(context_, x, y);
    }

    void line(Vector to) {
        if (!isReachable(current_) || !isReachable(to)) {
            breakAtBorders(to);
        }
        current_ = to;
        lineTo(to);
    }

    // Halves the curve until each part is either within the box or beside it.
    void cubic(Vector c1, Vector c2, Vector to) {
        std::array<Part, deepest + 1> open{{{{current_, c1, c2, to}, 0}}};
        for (std::size_t count = 1; count > 0;) {
            const Part part = open[--count];
            if (part.depth == deepest || !isAcrossBorder(part.curve)) {
                add(part.curve);
                continue;
            }
            const auto [first, second] = halves(part.curve);
            open[count++] = {second, part.depth + 1};
            open[count++] = {first, part.depth + 1};
        }
    }

    void close() {
        line(start_);
        cairo_close_path(context_);
    }

    [[nodiscard]] Vector mapped(Point p) const { return toDevice_(p); }

private:
    using Cubic = std::array<Vector, 4>;
    struct Part {
        Cubic curve;
        std::size_t depth = 0;
    };
    static constexpr std::size_t deepest = 48;

    static bool isReachable(Vector p) { return std::abs(p.x) <= reach && std::abs(p.y) <= reach; }
    static Vector clamped(Vector p) { return {std::clamp(p.x, -reach, reach), std::clamp(p.y, -reach, reach)}; }

    void lineTo(Vector to) {
        const auto [x, y] = clamped(to);
        cairo_line_to(context_, x, y);
    }

    void breakAtBorders(Vector to) {
        std::array<double, 4> places{
            (-reach - current_.x) / (to.x - current_.x), (reach - current_.x) / (to.x - current_.x),
            (-reach - current_.y) / (to.y - current_.y), (reach - current_.y) / (to.y - current_.y)};
        std::ranges::sort(places, [](double a, double b) { return (a > 0 ? a : 0) < (b > 0 ? b : 0); });
        for (const double t : places) {
            if (t > 0 && t < 1) {
                lineTo(between(current_, to, t));
            }
        }
    }

    static Box hull(const Cubic& curve) {
        Box box;
        for (const Vector p : curve) {
            box.include(p);
        }
        return box;
    }

    static bool isAcrossBorder(const Cubic& curve) {
        const Box box = hull(curve);
        return box.touches(reachable) && !box.isWithin(reachable);
    }

    static std::pair<Cubic, Cubic> halves(const Cubic& curve) {
        const Vector a = between(curve[0], curve[1], 0.5);
        const Vector b = between(curve[1], curve[2], 0.5);
        const Vector c = between(curve[2], curve[3], 0.5);
        const Vector ab = between(a, b, 0.5);
        const Vector bc = between(b, c, 0.5);
        const Vector middle = between(ab, bc, 0.5);
        return {{curve[0], a, ab, middle}, {middle, bc, c, curve[3]}};
    }

    void add(const Cubic& curve) {
        if (hull(curve).isWithin(reachable)) {
            cairo_curve_to(context_, curve[1].x, curve[1].y, curve[2].x, curve[2].y, curve[3].x, curve[3].y);
            current_ = curve[3];
        } else {
            line(curve[3]);
        }
    }

    cairo_t* context_;
    const Affine& toDevice_;
    Vector current_, start_;
};

template <typename Target>
void addParts(std::span<const Verb> verbs, const Point* points, Target& target) {
    for (const Verb verb : verbs) {
        switch (verb) {
            case Verb::move:
                target.move(target.mapped(points[0]));
                break;
            case Verb::line:
                target.line(target.mapped(points[0]));
                break;
            case Verb::cubic:
                target.cubic(target.mapped(points[0]), target.mapped(points[1]), target.mapped(points[2]));
                break;
            case Verb::close:
                target.close();
                break;
        }
        points += pointsOf(verb);
    }
}

struct Subpath {
    std::span<const Verb> verbs;
    std::span<const Point> points;

    [[nodiscard]] bool hasLength() const {
        return std::ranges::any_of(points, [this](Point p) { return p != points.front(); });
    }
};

// Calls `act` for each part that a move begins.
template <typename Act>
void forEachSubpath(const CGPath& path, Act act) {
    const auto verbs = path.verbs();
    const auto points = path.points();
    for (std::size_t verb = 0, point = 0; verb < verbs.size();) {
        const std::size_t firstVerb = verb;
        const std::size_t firstPoint = point;
        do {
            point += pointsOf(verbs[verb++]);
        } while (verb < verbs.size() && verbs[verb] != Verb::move);
        act(Subpath{verbs.subspan(firstVerb, verb - firstVerb), points.subspan(firstPoint, point - firstPoint)});
    }
}

// Long enough to keep its direction on the grid that the context rounds to, short enough not to be seen.
double stubLength(const Affine& toDevice, const LineStyle& line) {
    constexpr double grid = 1.0 / 256;
    const bool alongAxis = (toDevice.b == 0 && toDevice.c == 0) || (toDevice.a == 0 && toDevice.d == 0);
    return alongAxis ? 2 * grid : std::clamp(line.width * toDevice.stretch().least / 100, 16 * grid, reach);
}

template <typename Target>
void addStub(Point at, const Affine& toDevice, const LineStyle& line, Target& target) {
    const double half = stubLength(toDevice, line) / 2 / std::hypot(toDevice.a, toDevice.b);
    const Vector middle = toDevice(at);
    target.move({middle.x - half * toDevice.a, middle.y - half * toDevice.b});
    target.line({middle.x + half * toDevice.a, middle.y + half * toDevice.b});
}

template <typename Target>
void addStrokedParts(const CGPath& path, const Affine& toDevice, const LineStyle& line, Target target) {
    forEachSubpath(path, [&](const Subpath& part) {
        if (part.points.empty() || part.verbs.size() < 2) {
            return;
        }
        if (part.hasLength()) {
            addParts(part.verbs, part.points.data(), target);
        } else if (line.cap != dom::LineCap::butt) {
            addStub(part.points.front(), toDevice, line, target);
        }
    });
}

cairo_line_cap_t cairoCap(dom::LineCap cap) {
    switch (cap) {
        case dom::LineCap::butt:
            return CAIRO_LINE_CAP_BUTT;
        case dom::LineCap::round:
            return CAIRO_LINE_CAP_ROUND;
        case dom::LineCap::square:
            return CAIRO_LINE_CAP_SQUARE;
    }
    return CAIRO_LINE_CAP_BUTT;
}

cairo_line_join_t cairoJoin(dom::LineJoin join) {
    switch (join) {
        case dom::LineJoin::miter:
            return CAIRO_LINE_JOIN_MITER;
        case dom::LineJoin::round:
            return CAIRO_LINE_JOIN_ROUND;
        case dom::LineJoin::bevel:
            return CAIRO_LINE_JOIN_BEVEL;
    }
    return CAIRO_LINE_JOIN_MITER;
}

}  // namespace

Box hullOf(const CGPath& path) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    float left = infinity;
    float top = infinity;
    float right = -infinity;
    float bottom = -infinity;
    float strange = 0;  // stays 0 unless a number is none or without end
    for (const Point p : path.points()) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        top = std::min(top, p.y);
        bottom = std::max(bottom, p.y);
        strange += p.x * 0 + p.y * 0;
    }
    if (strange != 0 || !(left <= right)) {
        return {};
    }
    return {static_cast<double>(left), static_cast<double>(top), static_cast<double>(right),
            static_cast<double>(bottom)};
}

double reachOf(const LineStyle& line) {
    const double corner = line.join == dom::LineJoin::miter ? std::max(line.miterLimit, 1.0) : 1;
    return line.width / 2 * std::max(corner, std::sqrt(2.0));
}

void addFilledPath(cairo_t* context, const CGPath& path, const Affine& toDevice, const Box& deviceHull) {
    if (deviceHull.isWithin(reachable)) {
        NearPath target(context, toDevice);
        addParts(path.verbs(), path.points().data(), target);
    } else {
        FarPath target(context, toDevice);
        addParts(path.verbs(), path.points().data(), target);
    }
}

void addStrokedPath(cairo_t* context, const CGPath& path, const Affine& toDevice, const Box& deviceHull,
                    const LineStyle& line) {
    if (deviceHull.isWithin(reachable)) {
        addStrokedParts(path, toDevice, line, NearPath(context, toDevice));
    } else {
        addStrokedParts(path, toDevice, line, FarPath(context, toDevice));
    }
}

bool isVisible(const LineStyle& line, const Affine& toDevice) {
    const auto [most, least] = toDevice.stretch();
    return toDevice.invertible() && least > most * flattestPen && line.width * most > thinnestPen &&
           std::isfinite(line.width) && std::isfinite(line.miterLimit);
}

void strokeAdded(cairo_t* context, const LineStyle& line, const Affine& toDevice) {
    const double most = toDevice.stretch().most;
    const double width = std::min(line.width, 2 * widestPen / most);
    const double radius = width * most / 2;
    cairo_set_line_width(context, width);
    cairo_set_line_cap(context, cairoCap(line.cap));
    cairo_set_line_join(context, cairoJoin(line.join));
    cairo_set_miter_limit(context, std::clamp(line.miterLimit, 1.0, std::max(1.0, farthestCorner / radius)));
    cairo_set_tolerance(context, std::max(tolerance, radius * toleranceOfWidePens));
    // Where the matrix moves the origin to makes no difference to a pen.
    const cairo_matrix_t matrix{toDevice.a, toDevice.b, toDevice.c, toDevice.d, 0, 0};
    cairo_set_matrix(context, &matrix);
    cairo_stroke(context);
    cairo_identity_matrix(context);
    cairo_set_tolerance(context, tolerance);
}

cairo_fill_rule_t cairoRule(dom::FillRule rule) {
    return rule == dom::FillRule::evenodd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING;
}

CGPath rectanglePath(const layer_tree::Rect& rect) {
    const auto [x, y] = rect.origin;
    const auto [width, height] = rect.size;
    CGPath path;
    path.move({x, y});
    path.line({x + width, y});
    path.line({x + width, y + height});
    path.line({x, y + height});
    path.close();
    return path;
}

double edgeRows(const CGPath& path, const Affine& toDevice, const Box& visible) {
    double rows = 0;
    double previous = 0;
    for (const Point p : path.points()) {
        const double y = std::clamp(toDevice(p).y, visible.top, visible.bottom);
        rows += std::abs(y - previous) + 1;
        previous = y;
    }
    return rows;
}

}  // namespace sorvik::draw
