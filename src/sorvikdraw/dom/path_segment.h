#pragma once

#include <cstdint>
#include <variant>

namespace sorvik::draw::dom {

/// One segment of path data as it is written, in user units. `rotate` is in degrees.
struct PathSegment {
    enum class CoordinateSpace : std::uint8_t { absolute, relative };
    struct Move {
        float x = 0, y = 0;
        CoordinateSpace space{};
        bool operator==(const Move&) const = default;
    };
    struct Line {
        float x = 0, y = 0;
        CoordinateSpace space{};
        bool operator==(const Line&) const = default;
    };
    struct Horizontal {
        float x = 0;
        CoordinateSpace space{};
        bool operator==(const Horizontal&) const = default;
    };
    struct Vertical {
        float y = 0;
        CoordinateSpace space{};
        bool operator==(const Vertical&) const = default;
    };
    struct Cubic {
        float x1 = 0, y1 = 0, x2 = 0, y2 = 0, x = 0, y = 0;
        CoordinateSpace space{};
        bool operator==(const Cubic&) const = default;
    };
    struct CubicSmooth {
        float x2 = 0, y2 = 0, x = 0, y = 0;
        CoordinateSpace space{};
        bool operator==(const CubicSmooth&) const = default;
    };
    struct Quadratic {
        float x1 = 0, y1 = 0, x = 0, y = 0;
        CoordinateSpace space{};
        bool operator==(const Quadratic&) const = default;
    };
    struct QuadraticSmooth {
        float x = 0, y = 0;
        CoordinateSpace space{};
        bool operator==(const QuadraticSmooth&) const = default;
    };
    struct Arc {
        float rx = 0, ry = 0, rotate = 0;
        bool large = false, sweep = false;
        float x = 0, y = 0;
        CoordinateSpace space{};
        bool operator==(const Arc&) const = default;
    };
    struct Close {
        bool operator==(const Close&) const = default;
    };

    std::variant<Move, Line, Horizontal, Vertical, Cubic, CubicSmooth, Quadratic, QuadraticSmooth, Arc, Close> value;
    bool operator==(const PathSegment&) const = default;
};

}  // namespace sorvik::draw::dom
