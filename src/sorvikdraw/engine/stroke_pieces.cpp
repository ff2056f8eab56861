#include "sorvikdraw/engine/stroke_pieces.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <span>

namespace sorvik::draw {
namespace {

using layer_tree::Point;
using Verb = CGPath::Verb;

// In nanoseconds.
constexpr double segmentCost = 1000;
constexpr double edgeCost = 100;
constexpr double rowCost = 100;  // of one edge

// What a segment comes to, by its length and the pen.
class Measure {
public:
    Measure(const Affine& toDevice, const LineStyle& line, const Box& visible)
        : toDevice_(toDevice), rows_(visible.height()) {
        const double radius = line.width / 2 * toDevice.stretch().most;
        const double corners = cornersOfPen(radius);
        penRows_ = 2 * std::min(2 * radius, rows_);
        joinEdges_ = line.join == dom::LineJoin::round ? corners : 4;
        bendEdges_ = corners;
    }

    [[nodiscard]] double line(Point from, Point to) const {
        const Vector a = toDevice_(from);
        const Vector b = toDevice_(to);
        return cost(4 + joinEdges_, std::min(std::abs(a.y - b.y), rows_));
    }

    [[nodiscard]] double cubic(Point from, std::span<const Point> points) const {
        Vector previous = toDevice_(from);
        double length = 0;
        double climb = 0;
        for (const Point point : points) {
            const Vector next = toDevice_(point);
            length += std::hypot(next.x - previous.x, next.y - previous.y);
            climb += std::min(std::abs(next.y - previous.y), rows_);
            previous = next;
        }
        const double steps = std::min(1 + std::sqrt(length), mostSteps);
        return cost(6 * steps + bendEdges_ + joinEdges_, climb + steps);
    }

private:
    static constexpr double mostSteps = 2000;

    static double cornersOfPen(double radius) {
        constexpr double most = 450;
        return std::min(4 + 14 * std::sqrt(radius), most);
    }

    [[nodiscard]] double cost(double edges, double climb) const {
        return segmentCost + edges * edgeCost + 2 * (climb + penRows_ + 2) * rowCost;
    }

    const Affine& toDevice_;
    double rows_;
    double penRows_, joinEdges_, bendEdges_;
};

struct Segment {
    Point from;
    std::span<const Point> points;  ///< one of a line, three of a cubic
    [[nodiscard]] Point to() const { return points.back(); }
};

class PieceMaker {
public:
    PieceMaker(const Measure& measure, double most, const std::function<void(const CGPath&)>& act)
        : measure_(measure), most_(most), act_(act) {}

    void play(const CGPath& path) {
        const Point* next = path.points().data();
        for (const Verb verb : path.verbs()) {
            switch (verb) {
                case Verb::move:
                    move(*next++);
                    break;
                case Verb::line:
                    segment({next++, 1});
                    break;
                case Verb::cubic:
                    segment({next, 3});
                    next += 3;
                    break;
                case Verb::close:
                    close();
                    break;
            }
        }
        finish();
    }

private:
    void move(const Point& to) {
        start_ = current_ = to;
        first_.reset();
        last_.reset();
        whole_ = true;
        piece_.move(to);
    }

    void segment(std::span<const Point> points) {
        if (cost_ > most_) {
            finish();
            resume();
        }
        const Segment added{current_, points};
        if (!first_) {
            first_ = added;
        }
        add(added);
    }

    void add(const Segment& added) {
        if (added.points.size() == 1) {
            piece_.line(added.to());
            cost_ += measure_.line(added.from, added.to());
        } else {
            piece_.cubic(added.points[2], added.points[0], added.points[1]);
            cost_ += measure_.cubic(added.from, added.points);
        }
        current_ = added.to();
        last_ = added;
    }

    // The last segment once more, for the corner behind it.
    void resume() {
        if (last_) {
            whole_ = false;
            piece_.move(last_->from);
            add(*last_);
        } else {
            piece_.move(current_);
        }
    }

    void close() {
        if (whole_ || !first_) {
            piece_.close();
        } else {
            const Segment beginning = *first_;
            closing_ = start_;
            add({current_, {&closing_, 1}});
            add(beginning);
        }
        // What follows without a move starts where this did.
        move(start_);
    }

    void finish() {
        act_(piece_);
        piece_ = CGPath();
        cost_ = 0;
    }

    const Measure& measure_;
    double most_;
    const std::function<void(const CGPath&)>& act_;
    CGPath piece_;
    double cost_ = 0;
    Point start_, current_, closing_;
    std::optional<Segment> first_, last_;  ///< of the part that a move began
    bool whole_ = true;                    ///< all of that part is in this piece
};

}  // namespace

double strokeCost(const CGPath& path, const Affine& toDevice, const LineStyle& line, const Box& visible) {
    const Measure measure(toDevice, line, visible);
    const Point* next = path.points().data();
    Point current;
    double cost = 0;
    for (const Verb verb : path.verbs()) {
        switch (verb) {
            case Verb::move:
                current = *next++;
                break;
            case Verb::line:
                cost += measure.line(current, *next);
                current = *next++;
                break;
            case Verb::cubic:
                cost += measure.cubic(current, {next, 3});
                next += 3;
                current = next[-1];
                break;
            case Verb::close:
                cost += segmentCost;
                break;
        }
    }
    return cost;
}

void forEachStrokePiece(const CGPath& path, const Affine& toDevice, const LineStyle& line, const Box& visible,
                        double most, const std::function<void(const CGPath&)>& act) {
    PieceMaker(Measure(toDevice, line, visible), most, act).play(path);
}

}  // namespace sorvik::draw
