#pragma once

#include <variant>

namespace sorvik::draw::dom {

/// One item of a transform list. Angles are in degrees.
struct Transform {
    struct Matrix {
        float a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
        bool operator==(const Matrix&) const = default;
    };
    struct Translate {
        float tx = 0, ty = 0;
        bool operator==(const Translate&) const = default;
    };
    struct Scale {
        float sx = 1, sy = 1;
        bool operator==(const Scale&) const = default;
    };
    struct Rotate {
        float angle = 0;
        bool operator==(const Rotate&) const = default;
    };
    struct RotatePoint {
        float angle = 0, cx = 0, cy = 0;
        bool operator==(const RotatePoint&) const = default;
    };
    struct SkewX {
        float angle = 0;
        bool operator==(const SkewX&) const = default;
    };
    struct SkewY {
        float angle = 0;
        bool operator==(const SkewY&) const = default;
    };

    std::variant<Matrix, Translate, Scale, Rotate, RotatePoint, SkewX, SkewY> value;
    bool operator==(const Transform&) const = default;
};

}  // namespace sorvik::draw::dom
