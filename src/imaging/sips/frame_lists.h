#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace sorvik::sips {

/// What the structure of a file of several frames tells, without decoding one of them.
struct FrameList {
    std::uint64_t width = 0;   ///< pixels: the canvas of a GIF or WebP, the first page of a TIFF; 0 when cut off
    std::uint64_t height = 0;  ///< likewise
    std::uint64_t frames = 0;  ///< as many as begin in the file
    int orientation = 1;       ///< of the first page
    bool whole = false;        ///< every frame ends in the file, and so does the list of them
};

/// Blocks as in GIF89a, up to the trailer.
[[nodiscard]] FrameList gifFrames(std::span<const std::byte> bytes);

/// Chunks as in the WebP container (RFC 9649).
[[nodiscard]] FrameList webpFrames(std::span<const std::byte> bytes);

/// Directories as in TIFF 6.0, section 2, or BigTIFF.
[[nodiscard]] FrameList tiffPages(std::span<const std::byte> bytes);

}  // namespace sorvik::sips
