#pragma once

#include <functional>

#include "codecs/picture.h"

namespace sorvik::sips {

/// A picture that is being decoded: what it is, and its rows once. Upright; `metadata` says so too.
struct PictureSource {
    codecs::PixelLayout layout;
    codecs::PictureMetadata metadata;
    bool fullChroma = false;  ///< came from a JPEG with chroma at full resolution

    /// Hands all rows to the writer, from the top down, without finishing it. To be called once.
    /// Throws Failure when the picture turns out damaged, and what the writer throws.
    std::function<void(codecs::RowWriter&)> pump;
};

}  // namespace sorvik::sips
