#include "sorvikdraw/engine/transform_conversion.h"

#include <cmath>

#include "sorvikdraw/engine/affine.h"

namespace sorvik::draw::layer_tree {
namespace {

float radians(float degrees) { return degrees * 3.1415925F / 180; }

struct Converter {
    std::vector<Transform>& result;

    void operator()(const dom::Transform::Matrix& m) const {
        result.emplace_back(Matrix{m.a, m.b, m.c, m.d, m.e, m.f});
    }
    void operator()(const dom::Transform::Translate& by) const { result.emplace_back(Translate{by.tx, by.ty}); }
    void operator()(const dom::Transform::Scale& by) const { result.emplace_back(Scale{by.sx, by.sy}); }
    void operator()(const dom::Transform::Rotate& by) const { result.emplace_back(Rotate{radians(by.angle)}); }
    void operator()(const dom::Transform::RotatePoint& by) const {
        result.emplace_back(Translate{by.cx, by.cy});
        result.emplace_back(Rotate{radians(by.angle)});
        result.emplace_back(Translate{-by.cx, -by.cy});
    }
    void operator()(const dom::Transform::SkewX& by) const {
        result.emplace_back(Matrix{1, 0, std::tan(radians(by.angle)), 1, 0, 0});
    }
    void operator()(const dom::Transform::SkewY& by) const {
        result.emplace_back(Matrix{1, std::tan(radians(by.angle)), 0, 1, 0, 0});
    }
};

struct ToAffine {
    Affine operator()(const Matrix& matrix) const { return Affine::of(matrix); }
    Affine operator()(const Scale& by) const {
        return Affine::scaling(static_cast<double>(by.sx), static_cast<double>(by.sy));
    }
    Affine operator()(const Translate& by) const {
        return Affine::translation(static_cast<double>(by.tx), static_cast<double>(by.ty));
    }
    Affine operator()(const Rotate& by) const { return Affine::rotation(static_cast<double>(by.radians)); }
};

}  // namespace

std::vector<Transform> makeTransforms(std::span<const dom::Transform> transforms) {
    std::vector<Transform> result;
    result.reserve(transforms.size());
    for (const dom::Transform& transform : transforms) {
        std::visit(Converter{result}, transform.value);
    }
    return result;
}

Matrix product(std::span<const Transform> transforms) {
    Affine all;
    for (const Transform& transform : transforms) {
        all = all * std::visit(ToAffine{}, transform);
    }
    return {static_cast<float>(all.a), static_cast<float>(all.b),  static_cast<float>(all.c),
            static_cast<float>(all.d), static_cast<float>(all.tx), static_cast<float>(all.ty)};
}

}  // namespace sorvik::draw::layer_tree
