#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "imaging/sips/picture_source.h"

namespace sorvik::sips {

/// A JPEG whose header has been read: grey or RGB pixels of 8 bits, or colours that it doesn't turn
/// into those (CMYK).
class JpegDecoder {
public:
    /// `jpeg` must outlive the decoder. Throws Failure.
    explicit JpegDecoder(std::span<const std::byte> jpeg);
    ~JpegDecoder();

    /// Whether pump() can hand out the pixels: they are neither CMYK nor too many.
    [[nodiscard]] bool readable() const;
    /// Whether a reader that takes a stream of 3 components for YCbCr, as PDF does, shows it right.
    [[nodiscard]] bool plainColours() const;
    /// Whether the file ends where the picture does, as far as can be told without decoding it.
    [[nodiscard]] bool endsProperly() const;

    [[nodiscard]] const codecs::PixelLayout& layout() const;
    /// Orientation as it is in the file.
    [[nodiscard]] const codecs::PictureMetadata& metadata() const;
    [[nodiscard]] bool fullChroma() const;

    /// Components as they are coded: 1 grey, 3 colours, 4 CMYK.
    [[nodiscard]] int components() const;

    /// Throws Failure (tooLarge) before it allocates, or when the data are damaged or cut off.
    void pump(codecs::RowWriter& writer);

private:
    /// Begins to decode once the size is known to be bearable.
    void start();

    struct State;
    std::unique_ptr<State> state_;
};

/// `jpeg` without the segments that hold EXIF, XMP, IPTC and comments.
[[nodiscard]] std::vector<std::byte> withoutMetadata(std::span<const std::byte> jpeg);

}  // namespace sorvik::sips
