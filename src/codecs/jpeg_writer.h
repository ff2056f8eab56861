#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace sorvik::codecs {

/// An opaque picture that is whole in memory, as drawing libraries keep it: four bytes a pixel, blue, green, red and
/// one that is not read. The pixels stay their owner's.
struct OpaquePicture {
    const std::byte* pixels = nullptr;
    std::size_t stride = 0;    ///< bytes from the start of a row to the start of the next
    std::uint32_t width = 0;   ///< pixels
    std::uint32_t height = 0;  ///< pixels
};

enum class Chroma {
    byQuality,  ///< full from quality 90 up
    halved,     ///< 4:2:0
    full,       ///< 4:4:4
};

/// A picture that JPEG can't hold, as one with a side of 0 or beyond 65,500 pixels.
class JpegError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A JPEG (baseline, JFIF) without further metadata. `quality` is 1 to 100, libjpeg's scale, and taken as the nearest
/// of these beyond them. Besides the result, memory holds it once more and some rows. Throws JpegError, and
/// std::bad_alloc.
[[nodiscard]] std::vector<std::byte> encodeJpeg(const OpaquePicture& picture, int quality,
                                                Chroma chroma = Chroma::byQuality);

}  // namespace sorvik::codecs
