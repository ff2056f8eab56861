#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "sorvikdraw/text/text_module.h"

namespace sorvik::draw::text {

/// An outline that grows.
class Outline {
public:
    /// Of one outline; some 40 MB.
    static constexpr std::size_t mostPoints = 4'000'000;

    struct Point {
        float x = 0, y = 0;
    };

    void move(Point to) { add(sorvikTextMove, {to}); }
    void line(Point to) { add(sorvikTextLine, {to}); }
    void cubic(Point control1, Point control2, Point to) { add(sorvikTextCubic, {control1, control2, to}); }
    void close() { verbs_.push_back(sorvikTextClose); }

    [[nodiscard]] bool isTooLong() const { return verbs_.size() > mostPoints || numbers_.size() > 2 * mostPoints; }
    [[nodiscard]] const std::vector<SorvikTextVerb>& verbs() const { return verbs_; }
    [[nodiscard]] const std::vector<float>& numbers() const { return numbers_; }

private:
    void add(SorvikTextVerb verb, std::initializer_list<Point> points) {
        verbs_.push_back(verb);
        for (const Point point : points) {
            numbers_.push_back(point.x);
            numbers_.push_back(point.y);
        }
    }

    std::vector<SorvikTextVerb> verbs_;
    std::vector<float> numbers_;
};

}  // namespace sorvik::draw::text
