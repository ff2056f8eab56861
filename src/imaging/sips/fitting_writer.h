#pragma once

#include <vector>

#include "codecs/picture.h"

namespace sorvik::sips {

/// Rows on their way to a target that holds less: 16-bit samples are cut to 8 bits, transparency is
/// laid on white. `target` is written in the layout that fitted() gives, and outlives this writer.
class FittingWriter final : public codecs::RowWriter {
public:
    FittingWriter(codecs::RowWriter& target, const codecs::PixelLayout& source, const codecs::PixelLayout& fitted)
        : target_(target), source_(source), fitted_(fitted), row_(fitted.rowBytes()) {}

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override;
    void finish() override { target_.finish(); }

private:
    codecs::RowWriter& target_;
    codecs::PixelLayout source_;
    codecs::PixelLayout fitted_;
    std::vector<std::byte> row_;
};

/// The layout of `source` where a target holds no alpha, or no more than 8 bits.
[[nodiscard]] codecs::PixelLayout fitted(const codecs::PixelLayout& source, bool alpha, bool deep);

}  // namespace sorvik::sips
