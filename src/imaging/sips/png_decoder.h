#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "imaging/sips/picture_source.h"

namespace sorvik::sips {

/// A PNG whose header and whose chunks before the pixels have been read; palettes and few bits are
/// expanded to 8 bits.
class PngDecoder {
public:
    /// `png` must outlive the decoder. Throws Failure.
    explicit PngDecoder(std::span<const std::byte> png);
    ~PngDecoder();

    /// Whether pump() can hand out the pixels and metadata() is all there is: the file is not
    /// interlaced, and holds no metadata in the text chunks of old or behind its pixels.
    [[nodiscard]] bool readable() const;
    [[nodiscard]] const codecs::PixelLayout& layout() const;
    /// Orientation as it is in the file.
    [[nodiscard]] const codecs::PictureMetadata& metadata() const;

    /// Throws Failure when the data are damaged or cut off.
    void pump(codecs::RowWriter& writer);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace sorvik::sips
