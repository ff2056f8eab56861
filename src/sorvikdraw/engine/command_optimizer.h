#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "sorvikdraw/engine/renderer_command.h"

namespace sorvik::draw::layer_tree {

/// The kinds of state that are looked at; a set of bits.
enum class OptimizerOptions : std::uint8_t {
    none = 0,
    paints = 1,       ///< fill (colour or pattern) and stroke
    lines = 2,        ///< width, cap, join and miter limit
    compositing = 4,  ///< alpha and blend mode
    all = paints | lines | compositing,
};

[[nodiscard]] constexpr bool contains(OptimizerOptions set, OptimizerOptions option) {
    return (static_cast<unsigned>(set) & static_cast<unsigned>(option)) != 0;
}

/// Finds the commands of a list that set what is set already. Without them the list draws the same, in whatever state
/// it is played: a value that the list has not set itself is unknown.
template <typename Types>
class CommandOptimizer {
public:
    using Command = RendererCommand<Types>;

    explicit CommandOptimizer(OptimizerOptions options = OptimizerOptions::all) : options_(options) {}

    /// To be asked for each command of the list in its order. False for one that changes nothing.
    [[nodiscard]] bool keeps(const Command& command) { return std::visit(Keeps{*this}, command.value); }

private:
    using Fill = std::variant<typename Types::Color, typename Types::Pattern>;
    static constexpr std::size_t colorFill = 0;
    static constexpr std::size_t patternFill = 1;

    struct State {
        std::optional<typename Types::Float> opacity;
        std::optional<Fill> fill;
        std::optional<typename Types::Color> stroke;
        std::optional<typename Types::LineCap> lineCap;
        std::optional<typename Types::LineJoin> lineJoin;
        std::optional<typename Types::Float> lineWidth, lineMiter;
        std::optional<typename Types::BlendMode> blendMode;
    };

    /// The state in force on top of those that are saved.
    class Stack {
    public:
        [[nodiscard]] State& top() { return storage_.empty() ? root_ : storage_.back(); }
        void push() { storage_.push_back(State(top())); }
        void pop() {
            if (storage_.empty()) {
                root_ = {};
            } else {
                storage_.pop_back();
            }
        }

    private:
        State root_;
        std::vector<State> storage_;
    };

    struct Keeps {
        CommandOptimizer& optimizer;

        bool operator()(const typename Command::SetFill& c) const {
            return optimizer.sets(OptimizerOptions::paints, &State::fill,
                                  Fill(std::in_place_index<colorFill>, c.color));
        }
        bool operator()(const typename Command::SetFillPattern& c) const {
            return optimizer.sets(OptimizerOptions::paints, &State::fill,
                                  Fill(std::in_place_index<patternFill>, c.pattern));
        }
        bool operator()(const typename Command::SetStroke& c) const {
            return optimizer.sets(OptimizerOptions::paints, &State::stroke, c.color);
        }
        bool operator()(const typename Command::SetLine& c) const {
            return optimizer.sets(OptimizerOptions::lines, &State::lineWidth, c.width);
        }
        bool operator()(const typename Command::SetLineCap& c) const {
            return optimizer.sets(OptimizerOptions::lines, &State::lineCap, c.cap);
        }
        bool operator()(const typename Command::SetLineJoin& c) const {
            return optimizer.sets(OptimizerOptions::lines, &State::lineJoin, c.join);
        }
        bool operator()(const typename Command::SetLineMiter& c) const {
            return optimizer.sets(OptimizerOptions::lines, &State::lineMiter, c.limit);
        }
        bool operator()(const typename Command::SetAlpha& c) const {
            return optimizer.sets(OptimizerOptions::compositing, &State::opacity, c.alpha);
        }
        bool operator()(const typename Command::SetBlend& c) const {
            return optimizer.sets(OptimizerOptions::compositing, &State::blendMode, c.mode);
        }

        bool operator()(const typename Command::PushState&) const { return optimizer.pushes(); }
        bool operator()(const typename Command::PopState&) const { return optimizer.pops(); }
        bool operator()(const typename Command::PushTransparencyLayer&) const {
            optimizer.pushes();
            optimizer.stack_.top().opacity.reset();
            optimizer.stack_.top().blendMode.reset();
            return true;
        }
        bool operator()(const typename Command::PopTransparencyLayer&) const { return optimizer.pops(); }

        bool operator()(const typename Command::Concatenate&) const { return optimizer.moves(); }
        bool operator()(const typename Command::Translate&) const { return optimizer.moves(); }
        bool operator()(const typename Command::Rotate&) const { return optimizer.moves(); }
        bool operator()(const typename Command::Scale&) const { return optimizer.moves(); }
        bool operator()(const typename Command::SetClip&) const { return true; }
        bool operator()(const typename Command::Stroke&) const { return true; }
        bool operator()(const typename Command::ClipStrokeOutline&) const { return true; }
        bool operator()(const typename Command::Fill&) const { return true; }
        bool operator()(const typename Command::Draw&) const { return true; }
        bool operator()(const typename Command::DrawLinearGradient&) const { return true; }
        bool operator()(const typename Command::DrawRadialGradient&) const { return true; }
    };

    template <typename Value>
    bool sets(OptimizerOptions kind, std::optional<Value> State::*member, const Value& value) {
        std::optional<Value>& inForce = stack_.top().*member;
        if (contains(options_, kind) && inForce && *inForce == value) {
            return false;
        }
        inForce = value;
        return true;
    }
    bool pushes() {
        stack_.push();
        return true;
    }
    bool pops() {
        stack_.pop();
        return true;
    }

    // A pattern lies where the user space lies, so that the same pattern in another user space is another fill.
    bool moves() {
        auto& fill = stack_.top().fill;
        if (fill && fill->index() == patternFill) {
            fill.reset();
        }
        return true;
    }

    OptimizerOptions options_;
    Stack stack_;
};

/// The list without what CommandOptimizer finds.
template <typename Types>
[[nodiscard]] CommandList<Types> optimized(CommandList<Types> commands,
                                           OptimizerOptions options = OptimizerOptions::all) {
    CommandOptimizer<Types> optimizer(options);
    std::erase_if(commands, [&optimizer](const RendererCommand<Types>& command) { return !optimizer.keeps(command); });
    return commands;
}

}  // namespace sorvik::draw::layer_tree
