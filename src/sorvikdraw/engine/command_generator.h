#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <ranges>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/color_converter.h"
#include "sorvikdraw/engine/command_optimizer.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/engine/generator_warnings.h"
#include "sorvikdraw/engine/layer_tree.h"
#include "sorvikdraw/engine/recent_cache.h"
#include "sorvikdraw/engine/renderer_command.h"
#include "sorvikdraw/engine/renderer_type_provider.h"
#include "sorvikdraw/engine/shape_hash.h"

namespace sorvik::draw::layer_tree {

struct GeneratorOptions {
    bool hideUnsupportedFilters = false;  ///< instead of drawing what has a filter without it
    Caller caller = Caller::library;
    OptimizerOptions optimizer = OptimizerOptions::all;
};

/// Flattens a tree into the list of commands that draws it. What it can't draw, it leaves out, after a warning once
/// in its life where there is something that the reader could do.
template <RendererTypeProvider Provider>
class CommandGenerator {
public:
    using Types = typename Provider::Types;
    using Commands = CommandList<Types>;

    explicit CommandGenerator(Provider provider, GeneratorOptions options = {})
        : provider_(std::move(provider)), options_(options) {}

    /// Throws LimitError for a drawing beyond limits.h, and what the provider throws. The tree must outlive the
    /// generator, since values that are seen again are known by their address.
    [[nodiscard]] Commands makeCommands(const Tree& tree) {
        if (tree.root == nullptr) {
            return {};
        }
        beginList();
        steps_.push_back(BeginLayer{tree.root, DefaultColorConverter{}});
        while (!steps_.empty()) {
            const RenderStep step = steps_.back();
            steps_.pop_back();
            std::visit([this](const auto& chosen) { this->perform(chosen); }, step);
        }
        return endList();
    }

private:
    using Command = RendererCommand<Types>;
    using Path = typename Types::Path;

    struct CommandState {
        bool hasOpacity, hasTransform, hasClip, hasMask, hasFilters;

        explicit CommandState(const Layer& layer)
            : hasOpacity(layer.opacity < 1),
              hasTransform(!layer.transform.empty()),
              hasClip(layer.clip && !layer.clip->empty()),
              hasMask(layer.mask != nullptr),
              hasFilters(layer.filters && !layer.filters->empty()) {}

        [[nodiscard]] bool savesState() const { return hasOpacity || hasTransform || hasClip || hasMask; }
    };

    // What is still to be done, the last first.
    struct BeginLayer {
        const Layer* layer = nullptr;
        ColorConverter converter;
    };
    struct Contents {
        const Layer* layer = nullptr;
        std::size_t next = 0;
        ColorConverter converter;
    };
    struct BeginMask {
        const Layer* mask = nullptr;
    };
    struct EndMask {};
    struct EndLayer {
        CommandState state;
    };
    struct EndPattern {
        const Pattern* pattern = nullptr;
        ColorConverter converter;
    };
    using RenderStep = std::variant<BeginLayer, Contents, BeginMask, EndMask, EndLayer, EndPattern>;

    // A list that is being written: that of the drawing, or of a pattern that is needed within.
    struct Output {
        Commands commands;
        CommandOptimizer<Types> optimizer;
    };

    struct ShapeKey {
        const Shape* shape;
        bool operator==(const ShapeKey& other) const { return *shape == *other.shape; }
    };
    template <typename Definition>
    using ByDefinition = std::map<std::pair<const Definition*, std::size_t>, typename Types::Gradient>;

    using PatternKey = std::pair<const Pattern*, std::size_t>;

    // MARK: layers

    void perform(const BeginLayer& step) {
        const Layer& layer = *step.layer;
        const CommandState state(layer);
        spend(1);
        if (state.hasFilters && skipsFiltered()) {
            return;
        }
        if (state.savesState()) {
            emit(typename Command::PushState{});
        }
        emitTransforms(layer.transform);
        if (state.hasOpacity) {
            emit(typename Command::SetAlpha{provider_.createFloat(layer.opacity)});
            emit(typename Command::PushTransparencyLayer{});
        }
        if (state.hasClip) {
            emitClip(layer);
        }
        steps_.push_back(EndLayer{state});
        if (state.hasMask) {
            emit(typename Command::PushTransparencyLayer{});
            steps_.push_back(EndMask{});
            steps_.push_back(BeginMask{layer.mask});
        }
        if (!layer.contents.empty()) {
            steps_.push_back(Contents{&layer, 0, step.converter});
        }
    }

    void perform(const Contents& step) {
        const Layer::Contents& contents = step.layer->contents[step.next];
        if (const Pattern* missing = missingPattern(contents, step.converter)) {
            steps_.push_back(step);
            beginPattern(*missing, step.converter);
            return;
        }
        if (step.next + 1 < step.layer->contents.size()) {
            steps_.push_back(Contents{step.layer, step.next + 1, step.converter});
        }
        std::visit(Drawing{*this, step.converter}, contents);
    }

    // What is painted under a mask stays as far as the mask's own layer is opaque.
    void perform(const BeginMask& step) {
        emit(typename Command::SetBlend{provider_.createBlendMode(BlendMode::destinationIn)});
        emit(typename Command::PushTransparencyLayer{});
        emit(typename Command::SetBlend{provider_.createBlendMode(BlendMode::copy)});
        steps_.push_back(BeginLayer{step.mask, LuminanceColorConverter{}});
    }

    void perform(const EndMask&) {
        emit(typename Command::PopTransparencyLayer{});
        emit(typename Command::PopTransparencyLayer{});
    }

    void perform(const EndLayer& step) {
        if (step.state.hasOpacity) {
            emit(typename Command::PopTransparencyLayer{});
        }
        if (step.state.savesState()) {
            emit(typename Command::PopState{});
        }
    }

    bool skipsFiltered() {
        if (!options_.hideUnsupportedFilters && !std::exchange(hasLoggedFilterWarning_, true)) {
            warnOfUnsupportedFilter(options_.caller);
        }
        return options_.hideUnsupportedFilters;
    }

    void emitTransforms(const std::vector<Transform>& transforms) {
        for (const Transform& transform : transforms) {
            std::visit([this](const auto& chosen) { this->emitTransform(chosen); }, transform);
        }
    }
    void emitTransform(const Matrix& matrix) { emit(typename Command::Concatenate{provider_.createTransform(matrix)}); }
    void emitTransform(const Translate& by) {
        emit(typename Command::Translate{provider_.createFloat(by.tx), provider_.createFloat(by.ty)});
    }
    void emitTransform(const Scale& by) {
        emit(typename Command::Scale{provider_.createFloat(by.sx), provider_.createFloat(by.sy)});
    }
    void emitTransform(const Rotate& by) { emit(typename Command::Rotate{provider_.createFloat(by.radians)}); }

    void emitClip(const Layer& layer) {
        const auto rule = layer.clipRule.value_or(dom::FillRule::nonzero);
        emit(typename Command::SetClip{clipPath(*layer.clip), provider_.createFillRule(rule)});
    }

    // MARK: contents

    struct Drawing {
        CommandGenerator& generator;
        const ColorConverter& converter;

        void operator()(const std::unique_ptr<Layer::ShapeContents>& shape) const { generator.draw(*shape, converter); }
        void operator()(const std::unique_ptr<Layer::TextContents>& text) const { generator.draw(*text, converter); }
        void operator()(const std::unique_ptr<Image>& image) const { generator.draw(*image); }
        void operator()(Layer* child) const { generator.steps_.push_back(BeginLayer{child, converter}); }
    };

    template <typename Paint>
    static bool paintsNothing(const Paint& paint) {
        const Color* color = std::get_if<Color>(&paint);
        return color != nullptr && std::holds_alternative<NoColor>(*color);
    }

    void draw(const Layer::ShapeContents& contents, const ColorConverter& converter) {
        const FillAttributes& fills = contents.fill;
        const StrokeAttributes& strokes = contents.stroke;
        if (paintsNothing(fills.fill) && paintsNothing(strokes.color)) {
            return;
        }
        const Path path = this->path(contents.shape);
        std::visit([&](const auto& paint) { this->fill(path, paint, fills, converter); }, fills.fill);
        std::visit([&](const auto& paint) { this->stroke(path, paint, strokes, converter); }, strokes.color);
    }

    void fill(const Path& path, const Color& paint, const FillAttributes& attributes, const ColorConverter& converter) {
        const Color color = converted(paint, converter);
        if (!std::holds_alternative<NoColor>(color)) {
            emit(typename Command::SetFill{provider_.createColor(color)});
            emit(typename Command::Fill{path, provider_.createFillRule(attributes.rule)});
        }
    }

    void fill(const Path& path, const std::shared_ptr<const Pattern>& paint, const FillAttributes& attributes,
              const ColorConverter& converter) {
        emit(typename Command::SetFillPattern{patterns_.at({paint.get(), converter.index()})});
        emit(typename Command::Fill{path, provider_.createFillRule(attributes.rule)});
    }

    template <typename Definition>
    void fill(const Path& path, const std::shared_ptr<const Definition>& paint, const FillAttributes& attributes,
              const ColorConverter& converter) {
        emit(typename Command::PushState{});
        emit(typename Command::SetClip{path, provider_.createFillRule(attributes.rule)});
        if (attributes.opacity < 1) {
            emit(typename Command::SetAlpha{provider_.createFloat(attributes.opacity)});
        }
        emitGradient(*paint, path, converter);
        emit(typename Command::PopState{});
    }

    void stroke(const Path& path, const Color& paint, const StrokeAttributes& attributes,
                const ColorConverter& converter) {
        const Color color = converted(paint, converter);
        if (!std::holds_alternative<NoColor>(color)) {
            emitLineSettings(attributes);
            emit(typename Command::SetStroke{provider_.createColor(color)});
            emit(typename Command::Stroke{path});
        }
    }

    template <typename Definition>
    void stroke(const Path& path, const std::shared_ptr<const Definition>& paint, const StrokeAttributes& attributes,
                const ColorConverter& converter) {
        emit(typename Command::PushState{});
        emitLineSettings(attributes);
        emit(typename Command::ClipStrokeOutline{path});
        emitGradient(*paint, path, converter);
        emit(typename Command::PopState{});
    }

    void emitLineSettings(const StrokeAttributes& attributes) {
        emit(typename Command::SetLine{provider_.createFloat(attributes.width)});
        emit(typename Command::SetLineCap{provider_.createLineCap(attributes.cap)});
        emit(typename Command::SetLineJoin{provider_.createLineJoin(attributes.join)});
        emit(typename Command::SetLineMiter{provider_.createFloat(attributes.miterLimit)});
    }

    void draw(const Layer::TextContents& contents, const ColorConverter& converter) {
        const Color color = converted(contents.attributes.color, converter);
        spend(contents.text.size());
        if (std::holds_alternative<NoColor>(color)) {
            return;
        }
        if (std::optional<Path> path = provider_.createPath(contents)) {
            emit(typename Command::SetFill{provider_.createColor(color)});
            emit(typename Command::Fill{std::move(*path), provider_.createFillRule(dom::FillRule::nonzero)});
        }
    }

    void draw(const Image& image) {
        const std::optional<typename Types::Image>& bitmap = this->bitmap(image.bitmap);
        if (!bitmap) {
            return;
        }
        const Size own = provider_.size(*bitmap);
        const Rect in{image.origin, {image.width.value_or(own.width), image.height.value_or(own.height)}};
        if (in.size.width > 0 && in.size.height > 0) {
            emit(typename Command::Draw{*bitmap, provider_.createRect(in)});
        }
    }

    // MARK: gradients

    void emitGradient(const LinearGradient& definition, const Path& path, const ColorConverter& converter) {
        Point from = definition.start;
        Point to = definition.end;
        if (definition.units == Units::objectBoundingBox) {
            const Rect bounds = provider_.bounds(path);
            from = within(bounds, from);
            to = within(bounds, to);
        }
        emitTransforms(definition.transform);
        emit(typename Command::DrawLinearGradient{gradient(definition, linearGradients_, converter),
                                                  provider_.createPoint(from), provider_.createPoint(to)});
    }

    void emitGradient(const RadialGradient& definition, const Path& path, const ColorConverter& converter) {
        Point center = definition.center;
        Point endCenter = definition.endCenter;
        float unit = 1;
        if (definition.units == Units::objectBoundingBox) {
            const Rect bounds = provider_.bounds(path);
            center = within(bounds, center);
            endCenter = within(bounds, endCenter);
            unit = std::max(bounds.size.width, bounds.size.height);
        }
        emitTransforms(definition.transform);
        using Circles = typename Command::DrawRadialGradient::Circles;
        emit(typename Command::DrawRadialGradient{
            gradient(definition, radialGradients_, converter),
            Circles{provider_.createPoint(center), provider_.createFloat(definition.radius * unit),
                    provider_.createPoint(endCenter), provider_.createFloat(definition.endRadius * unit)}});
    }

    static Point within(const Rect& bounds, Point ratio) {
        return {bounds.origin.x + ratio.x * bounds.size.width, bounds.origin.y + ratio.y * bounds.size.height};
    }

    // MARK: values made once

    Path path(const Shape& shape) {
        spend(length(shape));
        return paths_.get(hash(shape), ShapeKey{&shape},
                          [this](const ShapeKey& key) { return provider_.createPath(*key.shape); });
    }

    Path clipPath(const std::vector<ClipShape>& clip) {
        if (clip.size() == 1 && clip.front().transform == Matrix{}) {
            return path(clip.front().shape);
        }
        const auto [place, isNew] = clipPaths_.try_emplace(&clip);
        if (isNew) {
            for (const ClipShape& part : clip) {
                spend(length(part.shape));
            }
            place->second = provider_.createPath(clip);
        }
        return place->second;
    }

    const std::optional<typename Types::Image>& bitmap(const Bitmap& bitmap) {
        const std::vector<std::byte>* identity = bitmap.bytes.get();
        const auto [place, isNew] = images_.try_emplace(identity);
        if (isNew) {
            place->second = provider_.createImage(bitmap);
        }
        return place->second;
    }

    template <typename Definition>
    typename Types::Gradient gradient(const Definition& definition, ByDefinition<Definition>& known,
                                      const ColorConverter& converter) {
        warnOfTransparentStopsIn(definition.gradient);
        const auto [place, isNew] = known.try_emplace({&definition, converter.index()});
        if (isNew) {
            place->second = provider_.createGradient(converted(definition.gradient, converter));
        }
        return place->second;
    }

    void warnOfTransparentStopsIn(const Gradient& gradient) {
        if (hasLoggedGradientWarning_ || provider_.supportsTransparentStops()) {
            return;
        }
        if (std::ranges::any_of(gradient.stops, [](const Gradient::Stop& stop) { return stop.opacity < 1; })) {
            hasLoggedGradientWarning_ = true;
            warnOfTransparentStops();
        }
    }

    // MARK: patterns

    // The pattern that the contents are painted with, if its commands are not there yet.
    [[nodiscard]] const Pattern* missingPattern(const Layer::Contents& contents,
                                                const ColorConverter& converter) const {
        const auto* shape = std::get_if<std::unique_ptr<Layer::ShapeContents>>(&contents);
        if (shape == nullptr) {
            return nullptr;
        }
        const auto* pattern = std::get_if<std::shared_ptr<const Pattern>>(&(*shape)->fill.fill);
        if (pattern == nullptr || patterns_.contains({pattern->get(), converter.index()})) {
            return nullptr;
        }
        return pattern->get();
    }

    void beginPattern(const Pattern& pattern, const ColorConverter& converter) {
        if (outputs_.size() > limits::expansionDepth) {
            throw LimitError("patterns are nested too deeply");
        }
        beginList();
        steps_.push_back(EndPattern{&pattern, converter});
        for (const Layer* layer : std::views::reverse(pattern.contents)) {
            steps_.push_back(BeginLayer{layer, converter});
        }
    }

    void perform(const EndPattern& step) {
        patterns_.emplace(PatternKey(step.pattern, step.converter.index()),
                          provider_.createPattern(step.pattern->frame, endList()));
    }

    // MARK: output

    void beginList() { outputs_.push_back({{}, CommandOptimizer<Types>(options_.optimizer)}); }

    Commands endList() {
        Commands commands = std::move(outputs_.back().commands);
        outputs_.pop_back();
        return commands;
    }

    template <typename Arguments>
    void emit(Arguments arguments) {
        spend(1);
        Command command{std::move(arguments)};
        if (!outputs_.back().optimizer.keeps(command)) {
            return;
        }
        if (++kept_ > limits::commands) {
            throw LimitError("the drawing takes too many steps");
        }
        outputs_.back().commands.push_back(std::move(command));
    }

    // Counts what is done, since layers that stand in many places can ask for work without end and emit nothing.
    void spend(std::size_t work) {
        work_ += work;
        if (work_ > limits::generatorWork) {
            throw LimitError("the drawing repeats its parts too often");
        }
    }

    Provider provider_;
    GeneratorOptions options_;
    bool hasLoggedFilterWarning_ = false;
    bool hasLoggedGradientWarning_ = false;

    std::vector<RenderStep> steps_;
    std::vector<Output> outputs_;  // the one that is written last
    std::size_t kept_ = 0;
    std::size_t work_ = 0;

    RecentCache<ShapeKey, Path, 1024> paths_;
    std::unordered_map<const std::vector<ClipShape>*, Path> clipPaths_;
    std::unordered_map<const std::vector<std::byte>*, std::optional<typename Types::Image>> images_;
    ByDefinition<LinearGradient> linearGradients_;  // by definition and colour converter, as are those below
    ByDefinition<RadialGradient> radialGradients_;
    std::map<PatternKey, typename Types::Pattern> patterns_;
};

}  // namespace sorvik::draw::layer_tree
