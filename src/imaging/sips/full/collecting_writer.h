#pragma once

#include <cstddef>
#include <vector>

#include "codecs/picture.h"

namespace sorvik::sips {

/// Base of writers whose encoder wants the whole picture: gathers the rows, close together.
class CollectingWriter : public codecs::RowWriter {
public:
    explicit CollectingWriter(const codecs::PixelLayout& layout) : layout_(layout) {
        pixels_.reserve(layout.rowBytes() * layout.height);
    }
    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::byte* row = rows + i * stride;
            pixels_.insert(pixels_.end(), row, row + layout_.rowBytes());
        }
    }

protected:
    [[nodiscard]] const codecs::PixelLayout& layout() const { return layout_; }
    [[nodiscard]] const std::vector<std::byte>& pixels() const { return pixels_; }

private:
    codecs::PixelLayout layout_;
    std::vector<std::byte> pixels_;
};

}  // namespace sorvik::sips
