#include "sorvikdraw/engine/layer_extents.h"

#include <cstddef>
#include <optional>

#include "sorvikdraw/engine/path_drawing.h"

namespace sorvik::draw {
namespace {

// Plays a list for nothing but the boxes of what it paints.
class Measurement {
public:
    explicit Measurement(const Affine& base) {
        levels_.emplace_back();
        levels_.back().user = base;
    }

    [[nodiscard]] std::vector<Box> take() && {
        while (levels_.size() > 1) {
            pop();
        }
        return std::move(extents_);
    }

    void operator()(const CGCommand::Concatenate& c) { user() = user() * Affine::of(c.transform); }
    void operator()(const CGCommand::Translate& c) {
        user() = user() * Affine::translation(static_cast<double>(c.tx), static_cast<double>(c.ty));
    }
    void operator()(const CGCommand::Rotate& c) { user() = user() * Affine::rotation(static_cast<double>(c.angle)); }
    void operator()(const CGCommand::Scale& c) {
        user() = user() * Affine::scaling(static_cast<double>(c.sx), static_cast<double>(c.sy));
    }
    void operator()(const CGCommand::SetLine& c) { levels_.back().line.width = static_cast<double>(c.width); }
    void operator()(const CGCommand::SetLineJoin& c) { levels_.back().line.join = c.join; }
    void operator()(const CGCommand::SetLineMiter& c) { levels_.back().line.miterLimit = static_cast<double>(c.limit); }
    void operator()(const CGCommand::SetClip& c) { clip(hullOf(*c.path)); }
    void operator()(const CGCommand::ClipStrokeOutline& c) { clip(strokedHull(*c.path)); }
    void operator()(const CGCommand::Stroke& c) { paint(strokedHull(*c.path)); }
    void operator()(const CGCommand::Fill& c) { paint(hullOf(*c.path)); }
    void operator()(const CGCommand::Draw& c) { paint(Box::of(c.in)); }
    void operator()(const CGCommand::DrawLinearGradient&) { paintAll(); }
    void operator()(const CGCommand::DrawRadialGradient&) { paintAll(); }
    void operator()(const CGCommand::PushState&) { levels_.push_back(inner()); }
    void operator()(const CGCommand::PopState&) { pop(); }
    void operator()(const CGCommand::PushTransparencyLayer&) {
        levels_.push_back(inner());
        levels_.back().layer = extents_.size();
        extents_.emplace_back();
    }
    void operator()(const CGCommand::PopTransparencyLayer&) { pop(); }

    // They change nothing about where things are painted.
    void operator()(const CGCommand::SetFill&) {}
    void operator()(const CGCommand::SetFillPattern&) {}
    void operator()(const CGCommand::SetStroke&) {}
    void operator()(const CGCommand::SetLineCap&) {}
    void operator()(const CGCommand::SetAlpha&) {}
    void operator()(const CGCommand::SetBlend&) {}

private:
    struct Level {
        Affine user;
        LineStyle line;
        Box clip = Box::everything();
        Box painted;
        std::optional<std::size_t> layer;
    };

    Affine& user() { return levels_.back().user; }

    [[nodiscard]] Level inner() const {
        Level level = levels_.back();
        level.painted = {};
        level.layer = {};
        return level;
    }

    [[nodiscard]] Box strokedHull(const CGPath& path) const { return hullOf(path).grown(reachOf(levels_.back().line)); }

    void clip(const Box& box) { levels_.back().clip = levels_.back().clip.intersected(user() * box); }

    void paint(const Box& box) {
        Level& level = levels_.back();
        if (level.user.invertible()) {
            level.painted.include(level.clip.intersected(level.user * box));
        }
    }

    void paintAll() { levels_.back().painted.include(levels_.back().clip); }

    void pop() {
        if (levels_.size() == 1) {
            return;
        }
        const Level level = levels_.back();
        levels_.pop_back();
        if (level.layer) {
            extents_[*level.layer] = level.painted;
        }
        levels_.back().painted.include(level.painted);
    }

    std::vector<Level> levels_;
    std::vector<Box> extents_;
};

}  // namespace

std::vector<Box> layerExtents(const CGCommands& commands, const Affine& base) {
    const auto isLayer = [](const CGCommand& command) {
        return std::holds_alternative<CGCommand::PushTransparencyLayer>(command.value);
    };
    if (std::ranges::none_of(commands, isLayer)) {
        return {};
    }
    Measurement measurement(base);
    for (const CGCommand& command : commands) {
        std::visit(measurement, command.value);
    }
    return std::move(measurement).take();
}

}  // namespace sorvik::draw
