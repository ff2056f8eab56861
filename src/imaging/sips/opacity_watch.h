#pragma once

#include "codecs/picture.h"

namespace sorvik::sips {

/// Hands rows on as they are and notices whether any pixel can be seen through. `target` outlives it.
class OpacityWatch final : public codecs::RowWriter {
public:
    OpacityWatch(codecs::RowWriter& target, const codecs::PixelLayout& layout) : target_(target), layout_(layout) {}

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override;
    void finish() override { target_.finish(); }

    /// Of the rows so far.
    [[nodiscard]] bool sawTransparency() const { return transparent_; }

private:
    codecs::RowWriter& target_;
    codecs::PixelLayout layout_;
    bool transparent_ = false;
};

/// Whether any pixel of a row in a layout with alpha can be seen through.
[[nodiscard]] bool rowIsTransparent(const std::byte* row, const codecs::PixelLayout& layout);

}  // namespace sorvik::sips
