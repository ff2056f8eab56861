#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "sorvikdraw/engine/cairo_objects.h"
#include "sorvikdraw/engine/cg_types.h"
#include "sorvikdraw/engine/path_drawing.h"
#include "sorvikdraw/engine/workshop.h"

namespace sorvik::draw {

/// Plays commands into a context, with the semantics of RendererCommand.
class CGRenderer {
public:
    /// Device space is the context's without its matrix, which is the user space that commands start in. Nothing
    /// outside of `visible`, a box in device space, needs to be painted. `depth` is how many patterns the renderer is
    /// inside of. Context and workshop must outlive the renderer.
    CGRenderer(cairo_t* context, const Box& visible, Workshop& workshop, int depth = 0);

    /// Throws LimitError, and DrawingError when the context fails. The context is as it was afterwards.
    void play(const CGCommands& commands);

    // One command each.
    void operator()(const CGCommand::Concatenate& command);
    void operator()(const CGCommand::Translate& command);
    void operator()(const CGCommand::Rotate& command);
    void operator()(const CGCommand::Scale& command);
    void operator()(const CGCommand::SetFill& command);
    void operator()(const CGCommand::SetFillPattern& command);
    void operator()(const CGCommand::SetStroke& command);
    void operator()(const CGCommand::SetLine& command);
    void operator()(const CGCommand::SetLineCap& command);
    void operator()(const CGCommand::SetLineJoin& command);
    void operator()(const CGCommand::SetLineMiter& command);
    void operator()(const CGCommand::SetClip& command);
    void operator()(const CGCommand::SetAlpha& command);
    void operator()(const CGCommand::SetBlend& command);
    void operator()(const CGCommand::Stroke& command);
    void operator()(const CGCommand::ClipStrokeOutline& command);
    void operator()(const CGCommand::Fill& command);
    void operator()(const CGCommand::Draw& command);
    void operator()(const CGCommand::DrawLinearGradient& command);
    void operator()(const CGCommand::DrawRadialGradient& command);
    void operator()(const CGCommand::PushState& command);
    void operator()(const CGCommand::PopState& command);
    void operator()(const CGCommand::PushTransparencyLayer& command);
    void operator()(const CGCommand::PopTransparencyLayer& command);

private:
    // A path in the user space that was in force when it was met.
    struct FilledOutline {
        const CGPath* path;
        Affine user;
        dom::FillRule rule;
    };
    struct StrokedOutline {
        const CGPath* path;
        Affine user;
        LineStyle line;
    };
    using Outline = std::variant<std::monostate, FilledOutline, StrokedOutline>;

    struct Source {
        cairo_pattern_t* pattern = nullptr;  ///< the colour, if null
        CGColor color{};
        double alpha = 1;
        double pixelCost = 0.5;  ///< nanoseconds
    };

    struct State {
        Affine user;
        CGColor fill{0, 0, 0, 1};
        CGColor stroke{0, 0, 0, 1};
        const CGTransformingPattern* pattern = nullptr;  ///< in the colour's place
        LineStyle line;
        double alpha = 1;
        BlendMode blend = BlendMode::normal;
        Box clip;  ///< in device space, within the target; around the clip's path
        /// A clip that the context does not know yet. What comes next is often a gradient that fills it, and a path
        /// filled or stroked with a gradient is cheaper and cleaner than a clip.
        Outline pendingClip;
    };

    enum class Kind : std::uint8_t {
        state,
        layer,
        outline  ///< a clip for which a layer is painted into the outline when the level ends
    };
    struct Level {
        State state;
        Kind kind = Kind::state;
        bool saved = false;  ///< the context's state too
        int clips = 0;       ///< in force in the context
        // Of layers and outlines:
        Workshop::Target target;
        cairo_t* below = nullptr;
        Outline outline;
        double alpha = 1;  ///< that an outline's layer is painted with
    };

    [[nodiscard]] State& state() { return levels_.back().state; }

    void save();
    void restore();
    void checkContext() const;
    bool skips(const CGCommand& command);

    void pushLevel(Kind kind);
    void pushTarget(Kind kind, const Box& box);
    void popLevel();
    void popTo(Kind kind);
    void composite(const Workshop::Target& layer);
    void compositeAsMask(const Workshop::Target& mask);
    void replaceTarget(Workshop::Target target);
    void clearClip();
    void clip(const Outline& outline, const Box& hull);
    void settleClip();
    [[nodiscard]] static bool isFlat(const Outline& outline);

    void setSource(const Source& source);
    void setOperator();
    [[nodiscard]] Box affected(const Box& painted) const;
    [[nodiscard]] PatternHandle faded(const Source& source);
    void fill(const FilledOutline& outline, const Source& source);
    void paint(const FilledOutline& outline, const Source& source);
    void paint(const StrokedOutline& outline, const Source& source);
    void paintInPieces(const StrokedOutline& outline, const Source& source, const Box& visible);
    void paint(const Outline& outline, const Source& source);
    void paintAll(const Source& source);
    void paintGradient(PatternHandle gradient, std::size_t stops);
    void paintPattern(const FilledOutline& outline, const CGTransformingPattern& pattern);
    void paintTiles(const FilledOutline& outline, const CGTransformingPattern& pattern, const Box& visible);
    void paintRepeated(const FilledOutline& outline, const CGTransformingPattern& pattern, const Box& inPattern);
    void paintTile(const CGTransformingPattern& pattern, const Affine& user, const Box& visible);
    template <typename Act>
    void inSlices(const Box& visible, double cost, Act act);

    cairo_t* ctx_;
    Affine baseCTM_;
    Workshop& workshop_;
    int depth_;
    std::vector<Level> levels_;
    std::vector<Box> layerExtents_;
    std::size_t nextLayer_ = 0;
    std::size_t skippedLayers_ = 0;        ///< open layers in which nothing can be seen
    std::optional<CGColor> sourceColor_;   ///< the context's source, if it is known and a colour
    std::optional<BlendMode> blendInUse_;  ///< the context's, if known
};

}  // namespace sorvik::draw
