#include "sorvikdraw/engine/command_printing.h"

#include <array>
#include <charconv>
#include <string_view>
#include <variant>

namespace sorvik::draw {
namespace {

using layer_tree::Point;
using layer_tree::Rect;

constexpr std::array<std::string_view, 3> blendModes{"normal", "copy", "destinationIn"};
constexpr std::array<std::string_view, 2> fillRules{"nonzero", "evenodd"};
constexpr std::array<std::string_view, 3> lineCaps{"butt", "round", "square"};
constexpr std::array<std::string_view, 3> lineJoins{"miter", "round", "bevel"};

template <typename Names, typename Value>
constexpr std::string_view name(const Names& names, Value value) {
    return names.at(static_cast<std::size_t>(value));
}

// One line, its words with blanks between them.
class Line {
public:
    explicit Line(std::string_view command) : text_(command) {}

    Line& add(std::string_view word) {
        text_.append(" ").append(word);
        return *this;
    }
    Line& add(float number) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        return add(std::string_view(digits.data(), end));
    }
    Line& add(Point point) { return add(point.x).add(point.y); }
    Line& add(const Rect& rect) { return add(rect.origin).add(rect.size.width).add(rect.size.height); }
    Line& add(const CGColor& color) { return add("rgba").add(color.r).add(color.g).add(color.b).add(color.a); }
    Line& add(const CGPath& path) {
        const Point* next = path.points().data();
        for (const CGPath::Verb verb : path.verbs()) {
            next = add(verb, next);
        }
        return *this;
    }
    Line& add(const CGGradient& gradient) {
        for (const CGGradient::Stop& stop : gradient.stops) {
            add(stop.offset).add(stop.color);
        }
        return *this;
    }
    Line& add(const CGTransformingPattern& pattern) {
        add(pattern.bounds).add("{");
        for (const CGCommand& command : pattern.contents) {
            add(print(command)).add(";");
        }
        return add("}");
    }

    operator std::string() const { return text_; }  // NOLINT(google-explicit-constructor): what it is for

private:
    const Point* add(CGPath::Verb verb, const Point* points) {
        switch (verb) {
            case CGPath::Verb::move:
                add("M").add(points[0]);
                return points + 1;
            case CGPath::Verb::line:
                add("L").add(points[0]);
                return points + 1;
            case CGPath::Verb::cubic:
                add("C").add(points[0]).add(points[1]).add(points[2]);
                return points + 3;
            case CGPath::Verb::close:
                add("Z");
                break;
        }
        return points;
    }

    std::string text_;
};

struct Print {
    std::string operator()(const CGCommand::Concatenate& c) const {
        const auto& [a, b, c2, d, tx, ty] = c.transform;
        return Line("concatenate").add(a).add(b).add(c2).add(d).add(tx).add(ty);
    }
    std::string operator()(const CGCommand::Translate& c) const { return Line("translate").add(c.tx).add(c.ty); }
    std::string operator()(const CGCommand::Rotate& c) const { return Line("rotate").add(c.angle); }
    std::string operator()(const CGCommand::Scale& c) const { return Line("scale").add(c.sx).add(c.sy); }
    std::string operator()(const CGCommand::SetFill& c) const { return Line("setFill").add(c.color); }
    std::string operator()(const CGCommand::SetFillPattern& c) const { return Line("setFillPattern").add(*c.pattern); }
    std::string operator()(const CGCommand::SetStroke& c) const { return Line("setStroke").add(c.color); }
    std::string operator()(const CGCommand::SetLine& c) const { return Line("setLine").add(c.width); }
    std::string operator()(const CGCommand::SetLineCap& c) const {
        return Line("setLineCap").add(name(lineCaps, c.cap));
    }
    std::string operator()(const CGCommand::SetLineJoin& c) const {
        return Line("setLineJoin").add(name(lineJoins, c.join));
    }
    std::string operator()(const CGCommand::SetLineMiter& c) const { return Line("setLineMiter").add(c.limit); }
    std::string operator()(const CGCommand::SetClip& c) const {
        return Line("setClip").add(*c.path).add(name(fillRules, c.rule));
    }
    std::string operator()(const CGCommand::SetAlpha& c) const { return Line("setAlpha").add(c.alpha); }
    std::string operator()(const CGCommand::SetBlend& c) const {
        return Line("setBlend").add(name(blendModes, c.mode));
    }
    std::string operator()(const CGCommand::Stroke& c) const { return Line("stroke").add(*c.path); }
    std::string operator()(const CGCommand::ClipStrokeOutline& c) const {
        return Line("clipStrokeOutline").add(*c.path);
    }
    std::string operator()(const CGCommand::Fill& c) const {
        return Line("fill").add(*c.path).add(name(fillRules, c.rule));
    }
    std::string operator()(const CGCommand::Draw& c) const {
        return Line("draw").add(static_cast<float>(c.image->width)).add(static_cast<float>(c.image->height)).add(c.in);
    }
    std::string operator()(const CGCommand::DrawLinearGradient& c) const {
        return Line("drawLinearGradient").add(c.from).add(c.to).add(*c.gradient);
    }
    std::string operator()(const CGCommand::DrawRadialGradient& c) const {
        return Line("drawRadialGradient")
            .add(c.circles->startCenter)
            .add(c.circles->startRadius)
            .add(c.circles->endCenter)
            .add(c.circles->endRadius)
            .add(*c.gradient);
    }
    std::string operator()(const CGCommand::PushState&) const { return "pushState"; }
    std::string operator()(const CGCommand::PopState&) const { return "popState"; }
    std::string operator()(const CGCommand::PushTransparencyLayer&) const { return "pushTransparencyLayer"; }
    std::string operator()(const CGCommand::PopTransparencyLayer&) const { return "popTransparencyLayer"; }
};

}  // namespace

std::string print(const CGCommand& command) { return std::visit(Print{}, command.value); }

std::string print(const CGCommands& commands) {
    std::string lines;
    for (const CGCommand& command : commands) {
        lines += print(command);
        lines += '\n';
    }
    return lines;
}

}  // namespace sorvik::draw
