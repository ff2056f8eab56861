#pragma once

#include "imaging/sips/files.h"
#include "imaging/sips/picture_facts.h"

namespace sorvik::sips {

/// The facts of a HEIC, AVIF or PDF, whose structure takes a library to understand; no picture is decoded.
/// Throws Failure for other contents, and where there is no first picture or page to tell of: also for a
/// PDF that only opens with a password.
[[nodiscard]] PictureFacts containerFacts(const InputFile& input);

/// Items as in ISO/IEC 23008-12; sides as the container turns and crops them.
[[nodiscard]] PictureFacts heifFacts(std::span<const std::byte> bytes);

/// Any repair that a reader has to make, and any object that it can't, count as damage.
[[nodiscard]] PictureFacts pdfFacts(std::span<const std::byte> bytes);

}  // namespace sorvik::sips
