#include "sorvikdraw/engine/p3_color.h"

#include <array>
#include <cmath>

namespace sorvik::draw::layer_tree {
namespace {

using Vector = std::array<double, 3>;
using Matrix3 = std::array<Vector, 3>;

constexpr Matrix3 linearP3ToXYZ{{{608311.0 / 1250200, 189793.0 / 714400, 198249.0 / 1000160},
                                 {35783.0 / 156275, 247089.0 / 357200, 198249.0 / 2500400},
                                 {0, 32229.0 / 714400, 5220557.0 / 5000800}}};
constexpr Matrix3 xyzToLinearSRGB{{{12831.0 / 3959, -329.0 / 214, -1974.0 / 3959},
                                   {-851781.0 / 878810, 1648619.0 / 878810, 36519.0 / 878810},
                                   {705.0 / 12673, -2585.0 / 12673, 705.0 / 667}}};

constexpr Matrix3 product(const Matrix3& left, const Matrix3& right) {
    Matrix3 result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t i = 0; i < 3; ++i) {
                result[row][column] += left[row][i] * right[i][column];
            }
        }
    }
    return result;
}

constexpr Matrix3 linearP3ToLinearSRGB = product(xyzToLinearSRGB, linearP3ToXYZ);

// Display P3 has the transfer curve of sRGB; beyond the range it goes on, mirrored at zero.
double decoded(double value) {
    const double size = std::abs(value);
    return std::copysign(size <= 0.04045 ? size / 12.92 : std::pow((size + 0.055) / 1.055, 2.4), value);
}

double encoded(double value) {
    const double size = std::abs(value);
    return std::copysign(size <= 0.0031308 ? size * 12.92 : 1.055 * std::pow(size, 1 / 2.4) - 0.055, value);
}

// What is no number counts as 0.
float clipped(float value) {
    if (!(value > 0)) {
        return 0;
    }
    return value < 1 ? value : 1;
}

float component(const Vector& row, const Vector& linear) {
    return static_cast<float>(encoded(row[0] * linear[0] + row[1] * linear[1] + row[2] * linear[2]));
}

RGBA converted(const RGBA& p3) {
    const Vector linear{decoded(static_cast<double>(p3.r)), decoded(static_cast<double>(p3.g)),
                        decoded(static_cast<double>(p3.b))};
    const auto& [r, g, b] = linearP3ToLinearSRGB;
    return {component(r, linear), component(g, linear), component(b, linear), p3.a, ColorSpace::srgb};
}

}  // namespace

RGBA toSRGB(const RGBA& color) {
    const RGBA srgb = color.space == ColorSpace::p3 ? converted(color) : color;
    return {clipped(srgb.r), clipped(srgb.g), clipped(srgb.b), clipped(srgb.a), ColorSpace::srgb};
}

}  // namespace sorvik::draw::layer_tree
