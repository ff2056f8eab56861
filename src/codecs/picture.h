#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sorvik::codecs {

/// How the samples of a picture lie in memory: rows from the top down, interleaved, alpha straight
/// (not premultiplied) and last. 16-bit samples are in the machine's byte order.
struct PixelLayout {
    std::uint32_t width = 0;   ///< pixels
    std::uint32_t height = 0;  ///< pixels
    int channels = 0;          ///< 1 grey, 2 grey and alpha, 3 RGB, 4 RGB and alpha
    int bitsPerSample = 8;     ///< 8 or 16

    [[nodiscard]] bool hasAlpha() const { return channels == 2 || channels == 4; }
    [[nodiscard]] std::size_t bytesPerPixel() const {
        return static_cast<std::size_t>(channels) * static_cast<std::size_t>(bitsPerSample / 8);
    }
    [[nodiscard]] std::size_t rowBytes() const { return width * bytesPerPixel(); }
    bool operator==(const PixelLayout&) const = default;
};

/// What travels with the pixels. An empty vector means that the picture has none.
struct PictureMetadata {
    std::vector<std::byte> icc;   ///< the profile as it is in a file of its own
    std::vector<std::byte> exif;  ///< a TIFF stream, without the "Exif\0\0" of JPEG
    std::vector<std::byte> xmp;   ///< the packet, UTF-8
    std::vector<std::byte> iptc;  ///< IPTC-IIM records (the contents of Photoshop resource 0x0404)
    double dotsPerInchX = 0;      ///< 0 when unknown
    double dotsPerInchY = 0;
    bool operator==(const PictureMetadata&) const = default;
};

/// Takes the rows of one picture from the top down, any number at a time.
class RowWriter {
public:
    virtual ~RowWriter() = default;

    /// `rows` holds whole rows, `stride` bytes from the start of one to the start of the next.
    /// Throws SinkError when the bytes can't be stored.
    virtual void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) = 0;

    /// To be called once, after the last row. Without it the file is not finished.
    virtual void finish() = 0;
};

}  // namespace sorvik::codecs
