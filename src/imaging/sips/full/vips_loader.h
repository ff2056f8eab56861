#pragma once

#include <optional>
#include <vips/vips8>

#include "codecs/picture.h"
#include "imaging/sips/content_kind.h"
#include "imaging/sips/files.h"

namespace sorvik::sips {

struct LoadedPicture {
    vips::VImage image;
    std::optional<codecs::PictureMetadata> metadata;  ///< of an intermediate; else it hangs on the image
};

/// The first page or frame of a picture, read by the loader that its content asks for; pixels follow
/// when they are asked for, from the top down only. Orientation is as in the file; for HEIC and AVIF,
/// whose container turns the picture, it is upright. `input` must outlive the image. Throws Failure
/// for contents that can't be read and sizes that are refused, vips::VError for damage.
[[nodiscard]] LoadedPicture loadPicture(ContentKind kind, const InputFile& input);

/// Whether a loader holds all pixels of such a picture in memory.
[[nodiscard]] bool loadsWhole(ContentKind kind);

}  // namespace sorvik::sips
