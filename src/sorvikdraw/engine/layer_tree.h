#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "sorvikdraw/dom/boxed.h"
#include "sorvikdraw/dom/presentation_attributes.h"
#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/engine/shared_list.h"

/// A drawing with everything resolved: absolute cubic paths, colours as numbers, each shape with its whole paint.
/// Nothing after it looks at the document. User units, y growing downward.
namespace sorvik::draw::layer_tree {

struct Point {
    float x = 0, y = 0;
    bool operator==(const Point&) const = default;
};
struct Size {
    float width = 0, height = 0;
    bool operator==(const Size&) const = default;
};
struct Rect {
    Point origin;
    Size size;
    bool operator==(const Rect&) const = default;
};

/// Maps (x, y) to (a x + c y + tx, b x + d y + ty).
struct Matrix {
    float a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    bool operator==(const Matrix&) const = default;
};
struct Scale {
    float sx = 1, sy = 1;
    bool operator==(const Scale&) const = default;
};
struct Translate {
    float tx = 0, ty = 0;
    bool operator==(const Translate&) const = default;
};
struct Rotate {
    float radians = 0;
    bool operator==(const Rotate&) const = default;
};
using Transform = std::variant<Matrix, Scale, Translate, Rotate>;

enum class ColorSpace : std::uint8_t { srgb, p3 };

/// Components are 0 to 1 where the document kept to the range; alpha is straight.
struct RGBA {
    float r = 0, g = 0, b = 0, a = 1;
    ColorSpace space = ColorSpace::srgb;
    bool operator==(const RGBA&) const = default;
};
struct Gray {
    float white = 0, a = 1;
    bool operator==(const Gray&) const = default;
};
struct NoColor {
    bool operator==(const NoColor&) const = default;
};
using Color = std::variant<NoColor, RGBA, Gray>;

struct PathSegment {
    struct Move {
        Point to;
        bool operator==(const Move&) const = default;
    };
    struct Line {
        Point to;
        bool operator==(const Line&) const = default;
    };
    struct Cubic {
        Point to, control1, control2;
        bool operator==(const Cubic&) const = default;
    };
    struct Close {
        bool operator==(const Close&) const = default;
    };
    std::variant<Move, Line, Cubic, Close> value;
    bool operator==(const PathSegment&) const = default;
};
struct Path {
    SharedList<PathSegment> segments;
    bool operator==(const Path&) const = default;
};

struct Shape {
    struct Line {  ///< an open polyline
        SharedList<Point> between;
        bool operator==(const Line&) const = default;
    };
    struct Rectangle {
        Rect within;
        Size radii;  ///< of the corners
        bool operator==(const Rectangle&) const = default;
    };
    struct Ellipse {
        Rect within;
        bool operator==(const Ellipse&) const = default;
    };
    struct Polygon {  ///< closed
        SharedList<Point> between;
        bool operator==(const Polygon&) const = default;
    };
    std::variant<Line, Rectangle, Ellipse, Polygon, Path> value;
    bool operator==(const Shape&) const = default;
};

struct ClipShape {
    Shape shape;
    Matrix transform;
    bool operator==(const ClipShape&) const = default;
};

using Units = dom::Units;

struct Gradient {
    struct Stop {
        float offset = 0;
        Color color;
        float opacity = 1;
        bool operator==(const Stop&) const = default;
    };
    std::vector<Stop> stops;  ///< at least two
    bool operator==(const Gradient&) const = default;
};
struct LinearGradient {
    Gradient gradient;
    Point start, end;
    Units units = Units::objectBoundingBox;
    std::vector<Transform> transform;
    bool operator==(const LinearGradient&) const = default;
};
struct RadialGradient {
    Gradient gradient;
    Point center;  ///< the focus
    float radius = 0;
    Point endCenter;
    float endRadius = 0;
    Units units = Units::objectBoundingBox;
    std::vector<Transform> transform;
    bool operator==(const RadialGradient&) const = default;
};

struct Layer;

/// One tile, repeated from the origin of the user space.
struct Pattern {
    Rect frame;
    std::vector<Layer*> contents;  ///< belong to the Tree
};

/// Shared by all the shapes that refer to one definition.
using Fill = std::variant<Color, std::shared_ptr<const Pattern>, std::shared_ptr<const LinearGradient>,
                          std::shared_ptr<const RadialGradient>>;
using Stroke = std::variant<Color, std::shared_ptr<const LinearGradient>, std::shared_ptr<const RadialGradient>>;

struct FillAttributes {
    Fill fill;
    float opacity = 1;
    dom::FillRule rule = dom::FillRule::nonzero;
};
struct StrokeAttributes {
    Stroke color;
    float width = 1;
    dom::LineCap cap = dom::LineCap::butt;
    dom::LineJoin join = dom::LineJoin::miter;
    float miterLimit = 4;
};
struct TextAttributes {
    Color color;
    std::string fontName;
    float size = 12;
    dom::TextAnchor anchor = dom::TextAnchor::start;
};

/// An encoded picture, as it is in a file of its own.
struct Bitmap {
    enum class Format : std::uint8_t { jpeg, png };
    Format format = Format::png;
    std::shared_ptr<const std::vector<std::byte>> bytes;  ///< equal only by identity
};
struct Image {
    Bitmap bitmap;
    Point origin;
    std::optional<float> width, height;
};

struct Layer {
    struct ShapeContents {
        Shape shape;
        StrokeAttributes stroke;
        FillAttributes fill;
    };
    struct TextContents {
        std::string text;  ///< UTF-8
        Point at;
        TextAttributes attributes;
    };
    /// On the heap, since most layers hold one and of one kind. A Layer* belongs to the Tree.
    using Contents =
        std::variant<std::unique_ptr<ShapeContents>, std::unique_ptr<Image>, std::unique_ptr<TextContents>, Layer*>;

    Boxed<std::string> className;
    std::vector<Contents> contents;
    float opacity = 1;
    std::optional<dom::FillRule> clipRule;
    std::vector<Transform> transform;
    Shared<std::vector<ClipShape>> clip;  ///< shared by all that refer to one clip path
    Layer* mask = nullptr;                ///< belongs to the Tree
    Shared<std::vector<dom::Filter::Effect>> filters;
};

/// All the layers of a drawing, owned in one place so that nothing is destroyed recursively. A layer may stand in
/// several places (a `use` of a `use`), never inside itself.
struct Tree {
    std::deque<Layer> layers;
    Layer* root = nullptr;  ///< one of them; null for an empty tree
};

}  // namespace sorvik::draw::layer_tree
