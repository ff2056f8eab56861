#pragma once

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/layer_tree.h"
#include "sorvikdraw/engine/layer_tree_builder.h"

namespace sorvik::draw::layer_tree {

inline void PrintTo(const RGBA& color, std::ostream* out) {
    *out << "rgba(" << color.r << ' ' << color.g << ' ' << color.b << ' ' << color.a
         << (color.space == ColorSpace::p3 ? " p3)" : ")");
}
inline void PrintTo(const Point& point, std::ostream* out) { *out << '(' << point.x << ' ' << point.y << ')'; }

namespace testing {

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

/// Names a test of a table by its row.
inline constexpr auto nameOf = [](const auto& row) { return std::string(row.param.name); };

/// The layers of a drawing of 100 x 100 that holds `contents`.
inline Tree built(std::string_view contents, std::string_view rootAttributes = R"(width="100" height="100")") {
    std::string text = R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )";
    text.append(rootAttributes).append(">").append(contents).append("</svg>");
    const dom::SVG svg = dom::SVG::parseXML(text);
    return Builder(svg).makeLayer();
}

/// What the DrawingError says that the build ends in; empty if there is none.
inline std::string errorOf(std::string_view contents) {
    try {
        static_cast<void>(built(contents));
    } catch (const DrawingError& error) {
        return error.what();
    }
    return {};
}

inline const Layer& child(const Layer& layer, std::size_t index = 0) {
    return *std::get<Layer*>(layer.contents.at(index));
}
inline const Layer& child(const Tree& tree, std::size_t index = 0) { return child(*tree.root, index); }

template <typename Contents>
const Contents& contentsOf(const Layer& layer) {
    return *std::get<std::unique_ptr<Contents>>(layer.contents.at(0));
}
inline const Layer::ShapeContents& shapeOf(const Layer& layer) { return contentsOf<Layer::ShapeContents>(layer); }

inline Fill fillOf(const Layer& layer) { return shapeOf(layer).fill.fill; }
inline Stroke strokeOf(const Layer& layer) { return shapeOf(layer).stroke.color; }
template <typename Paint>
bool paintsNothing(const Paint& paint) {
    return std::holds_alternative<Color>(paint) && std::holds_alternative<NoColor>(std::get<Color>(paint));
}

/// Segments with letters and absolute numbers, as in "M0 0 C1 2 3 4 5 6 Z".
inline std::string written(const Path& path) {
    std::ostringstream out;
    const auto write = [&out](char letter, std::initializer_list<Point> points) {
        out << (out.tellp() > 0 ? " " : "") << letter;
        const char* blank = "";
        for (const auto& [x, y] : points) {
            out << std::exchange(blank, " ") << x << ' ' << y;
        }
    };
    const Overloaded segment{
        [&](const PathSegment::Move& move) { write('M', {move.to}); },
        [&](const PathSegment::Line& line) { write('L', {line.to}); },
        [&](const PathSegment::Cubic& cubic) {
            write('C', {cubic.control1, cubic.control2, cubic.to});
        },
        [&](const PathSegment::Close&) { write('Z', {}); },
    };
    for (const PathSegment& each : path.segments) {
        std::visit(segment, each.value);
    }
    return out.str();
}

/// Transforms as in "translate(1 2) rotate(0.5)".
inline std::string written(const std::vector<Transform>& transforms) {
    std::ostringstream out;
    const Overloaded write{
        [&](const Matrix& m) {
            out << "matrix(" << m.a << ' ' << m.b << ' ' << m.c << ' ' << m.d << ' ' << m.tx << ' ' << m.ty << ')';
        },
        [&](const Scale& by) { out << "scale(" << by.sx << ' ' << by.sy << ')'; },
        [&](const Translate& by) { out << "translate(" << by.tx << ' ' << by.ty << ')'; },
        [&](const Rotate& by) { out << "rotate(" << by.radians << ')'; },
    };
    for (const Transform& each : transforms) {
        out << (out.tellp() > 0 ? " " : "");
        std::visit(write, each);
    }
    return out.str();
}

inline std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (; times > 0; --times) {
        all += text;
    }
    return all;
}

}  // namespace testing
}  // namespace sorvik::draw::layer_tree
