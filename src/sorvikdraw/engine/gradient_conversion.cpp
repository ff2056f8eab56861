#include "sorvikdraw/engine/gradient_conversion.h"

#include "sorvikdraw/engine/color_resolution.h"
#include "sorvikdraw/engine/transform_conversion.h"

namespace sorvik::draw::layer_tree {
namespace {

constexpr std::size_t fewestStops = 2;

Gradient makeStops(const std::vector<dom::GradientStop>& stops) {
    const dom::Color noCurrentColor{};
    Gradient result;
    result.stops.reserve(stops.size());
    for (const dom::GradientStop& stop : stops) {
        result.stops.push_back({stop.offset, resolved(stop.color, noCurrentColor), stop.opacity});
    }
    return result;
}

}  // namespace

std::shared_ptr<const LinearGradient> makeGradient(const dom::LinearGradient& gradient,
                                                   const std::vector<dom::GradientStop>& stops) {
    if (stops.size() < fewestStops) {
        return nullptr;
    }
    return std::make_shared<const LinearGradient>(
        LinearGradient{makeStops(stops),
                       {gradient.x1.value_or(0), gradient.y1.value_or(0)},
                       {gradient.x2.value_or(1), gradient.y2.value_or(0)},
                       gradient.gradientUnits.value_or(Units::objectBoundingBox),
                       makeTransforms(gradient.gradientTransform)});
}

std::shared_ptr<const RadialGradient> makeGradient(const dom::RadialGradient& gradient,
                                                   const std::vector<dom::GradientStop>& stops) {
    if (stops.size() < fewestStops) {
        return nullptr;
    }
    const Point endCenter{gradient.cx.value_or(0.5F), gradient.cy.value_or(0.5F)};
    const Point focus{gradient.fx.value_or(endCenter.x), gradient.fy.value_or(endCenter.y)};
    return std::make_shared<const RadialGradient>(RadialGradient{
        makeStops(stops), focus, gradient.fr.value_or(0), endCenter, gradient.r.value_or(0.5F),
        gradient.gradientUnits.value_or(Units::objectBoundingBox), makeTransforms(gradient.gradientTransform)});
}

}  // namespace sorvik::draw::layer_tree
