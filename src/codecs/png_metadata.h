#pragma once

#include <optional>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"
#include "codecs/png_chunks.h"

namespace sorvik::codecs {

/// Writes the chunks of the metadata, which stand between IHDR and the pixels; a profile that does not
/// fit the layout and parts that no chunk can hold are left out. Compressed parts
/// are stored without deflating them where `deflate` is false.
void writePngMetadata(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata, bool deflate);

/// Takes what one of those chunks holds into `metadata`; other chunks change nothing. False when the chunk
/// is damaged. Compressed parts are read as far as they are stored, not deflated (level 0), which keeps a
/// small file from growing large in memory.
[[nodiscard]] bool readPngMetadata(const ChunkView& chunk, PictureMetadata& metadata);

}  // namespace sorvik::codecs
