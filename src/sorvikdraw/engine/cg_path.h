#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "sorvikdraw/engine/layer_tree.h"

namespace sorvik::draw {

/// A path of absolute lines and cubics. Verbs and points lie apart, in one piece of memory: a move or line takes one
/// point, a cubic three (control, control, end), a close none. What is drawn before the first move is up to those
/// that play the path.
class CGPath {
public:
    enum class Verb : std::uint8_t { move, line, cubic, close };

    CGPath() = default;
    CGPath(const CGPath& other);
    CGPath(CGPath&& other) noexcept { swap(other); }
    CGPath& operator=(CGPath other) noexcept;
    ~CGPath() = default;

    void move(layer_tree::Point to);
    void line(layer_tree::Point to);
    void cubic(layer_tree::Point to, layer_tree::Point control1, layer_tree::Point control2);
    void close();
    void append(const CGPath& other, const layer_tree::Matrix& transform);
    /// Makes room for that many points and verbs in all, and no more; for paths whose size is known ahead.
    void reserve(std::size_t points, std::size_t verbs);
    /// Gives back what was reserved beyond the contents; to be called once the path is whole.
    void shrink();

    [[nodiscard]] std::span<const Verb> verbs() const;
    [[nodiscard]] std::span<const layer_tree::Point> points() const;
    [[nodiscard]] bool empty() const { return verbCount_ == 0; }

    /// Where the curve itself runs, not its control points; an empty path gives an empty rect.
    [[nodiscard]] layer_tree::Rect bounds() const;

    bool operator==(const CGPath& other) const;

private:
    void swap(CGPath& other) noexcept;
    void reallocate(std::size_t points, std::size_t verbs);
    void makeRoom(std::size_t points, std::size_t verbs);
    void begin(Verb verb, std::size_t points);
    void add(layer_tree::Point point) { pointData()[pointCount_++] = point; }
    [[nodiscard]] layer_tree::Point* pointData() const;
    [[nodiscard]] Verb* verbData() const;

    std::unique_ptr<std::byte[]> storage_;  // room for the points, then room for the verbs
    std::uint32_t pointCount_ = 0, verbCount_ = 0;
    std::uint32_t pointRoom_ = 0, verbRoom_ = 0;
};

}  // namespace sorvik::draw
