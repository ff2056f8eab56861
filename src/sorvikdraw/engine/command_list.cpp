#include "sorvikdraw/engine/command_list.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <set>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

namespace sorvik::draw {
namespace {

class Equality {
public:
    bool equal(const CGCommands& a, const CGCommands& b) {
        pending_.emplace_back(&a, &b);
        while (!pending_.empty()) {
            const auto [left, right] = pending_.back();
            pending_.pop_back();
            if (!std::ranges::equal(*left, *right, std::bind_front(&Equality::mayBeEqual, this))) {
                return false;
            }
        }
        return true;
    }

private:
    // The contents of patterns are left for later.
    bool mayBeEqual(const CGCommand& a, const CGCommand& b) {
        const auto* left = std::get_if<CGCommand::SetFillPattern>(&a.value);
        const auto* right = std::get_if<CGCommand::SetFillPattern>(&b.value);
        if (left == nullptr || right == nullptr) {
            return a == b;
        }
        if (left->pattern != right->pattern && seen_.emplace(left->pattern.get(), right->pattern.get()).second) {
            pending_.emplace_back(&left->pattern->contents, &right->pattern->contents);
        }
        return left->pattern->bounds == right->pattern->bounds;
    }

    std::vector<std::pair<const CGCommands*, const CGCommands*>> pending_;
    std::set<std::pair<const CGTransformingPattern*, const CGTransformingPattern*>> seen_;
};

class Hash {
public:
    void add(std::size_t word) { state_ = (std::rotl(state_, 5) ^ word) * 0x9E3779B97F4A7C15U; }
    // The two zeros are equal.
    void add(float number) { add(std::size_t{std::bit_cast<std::uint32_t>(number + 0.0F)}); }
    void add(const CGPath& path) {
        for (const layer_tree::Point point : path.points()) {
            add(point.x);
            add(point.y);
        }
    }
    [[nodiscard]] std::size_t value() const { return state_; }

private:
    std::uint64_t state_ = 0;
};

class MemoryUse {
public:
    explicit MemoryUse(std::size_t enough) : enough_(enough) {}

    std::size_t of(const CGCommands& commands) {
        pending_.push_back(&commands);
        while (!pending_.empty()) {
            const CGCommands& next = *pending_.back();
            pending_.pop_back();
            for (auto command = next.begin(); command != next.end() && bytes_ <= enough_; ++command) {
                bytes_ += sizeof(CGCommand);
                std::visit(*this, command->value);
            }
        }
        return bytes_;
    }

    void operator()(const CGCommand::Concatenate&) {}
    void operator()(const CGCommand::Translate&) {}
    void operator()(const CGCommand::Rotate&) {}
    void operator()(const CGCommand::Scale&) {}
    void operator()(const CGCommand::SetFill&) {}
    void operator()(const CGCommand::SetFillPattern& c) {
        if (isNew(c.pattern.get())) {
            pending_.push_back(&c.pattern->contents);
        }
    }
    void operator()(const CGCommand::SetStroke&) {}
    void operator()(const CGCommand::SetLine&) {}
    void operator()(const CGCommand::SetLineCap&) {}
    void operator()(const CGCommand::SetLineJoin&) {}
    void operator()(const CGCommand::SetLineMiter&) {}
    void operator()(const CGCommand::SetClip& c) { add(c.path); }
    void operator()(const CGCommand::SetAlpha&) {}
    void operator()(const CGCommand::SetBlend&) {}
    void operator()(const CGCommand::Stroke& c) { add(c.path); }
    void operator()(const CGCommand::ClipStrokeOutline& c) { add(c.path); }
    void operator()(const CGCommand::Fill& c) { add(c.path); }
    void operator()(const CGCommand::Draw& c) {
        if (isNew(c.image.get())) {
            bytes_ += c.image->bitmap.bytes->size();
        }
    }
    void operator()(const CGCommand::DrawLinearGradient& c) { add(c.gradient); }
    void operator()(const CGCommand::DrawRadialGradient& c) {
        bytes_ += sizeof(CGCommand::DrawRadialGradient::Circles);
        add(c.gradient);
    }
    void operator()(const CGCommand::PushState&) {}
    void operator()(const CGCommand::PopState&) {}
    void operator()(const CGCommand::PushTransparencyLayer&) {}
    void operator()(const CGCommand::PopTransparencyLayer&) {}

private:
    bool isNew(const void* value) { return seen_.insert(value).second; }
    void add(const CGTypes::Path& path) {
        if (isNew(path.get())) {
            bytes_ += sizeof(CGPath) + path->points().size_bytes() + path->verbs().size_bytes();
        }
    }
    void add(const CGTypes::Gradient& gradient) {
        if (isNew(gradient.get())) {
            bytes_ += sizeof(CGGradient) + gradient->stops.size() * sizeof(CGGradient::Stop);
        }
    }

    std::size_t enough_;
    std::size_t bytes_ = 0;
    std::vector<const CGCommands*> pending_;
    std::unordered_set<const void*> seen_;
};

}  // namespace

bool equal(const CGCommands& a, const CGCommands& b) { return Equality().equal(a, b); }

std::size_t hash(const CGCommands& commands) {
    Hash hash;
    for (const CGCommand& command : commands) {
        hash.add(command.value.index());
        if (const auto* fill = std::get_if<CGCommand::Fill>(&command.value)) {
            hash.add(*fill->path);
        } else if (const auto* stroke = std::get_if<CGCommand::Stroke>(&command.value)) {
            hash.add(*stroke->path);
        } else if (const auto* paint = std::get_if<CGCommand::SetFill>(&command.value)) {
            hash.add(paint->color.r);
            hash.add(paint->color.g);
            hash.add(paint->color.b);
        }
    }
    return hash.value();
}

std::size_t memoryUse(const CGCommands& commands, std::size_t enough) { return MemoryUse(enough).of(commands); }

}  // namespace sorvik::draw
