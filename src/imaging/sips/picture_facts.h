#pragma once

#include <cstdint>
#include <string_view>

#include "imaging/sips/files.h"

namespace sorvik::sips {

/// What is told of a picture file before and after it is made smaller.
struct PictureFacts {
    std::string_view kind;     ///< jpeg png gif webp tiff heic avif pdf
    std::uint64_t width = 0;   ///< pixels as stored, points of a PDF page; of the first page or frame
    std::uint64_t height = 0;  ///< likewise
    std::uint64_t pages = 1;   ///< pages, frames, top-level pictures
    int orientation = 1;       ///< of EXIF or TIFF; 1 where the container turns the picture (HEIC, AVIF)
    bool alpha = false;        ///< an opacity channel; looked for in HEIC and AVIF alone
    bool extras = false;       ///< a PDF's forms, attachments, layers, signatures
    bool whole = true;         ///< neither cut off nor damaged, as far as that can be told cheaply
};

/// The facts of a JPEG, PNG, GIF, WebP or TIFF, by their structure: no pixels are decoded. Throws Failure for other
/// contents, headers that tell no size, and pictures too large to be looked at.
[[nodiscard]] PictureFacts plainFacts(const InputFile& input);

/// Prints the line of the facts on standard output. Throws Failure.
void announce(const PictureFacts& facts);

}  // namespace sorvik::sips
