#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace sorvik::imaging {

/// One image of an icon file, little-endian throughout: a 6-byte header, a 16-byte directory entry an
/// image, then the images' data (Windows icon format).
struct IcoFrame {
    std::uint32_t width = 0;   ///< pixels, read from the image data itself (a directory byte holds at most 256)
    std::uint32_t height = 0;  ///< pixels of the picture, without the mask's half
    QByteArray data;           ///< a whole PNG file, or a bitmap without its file header
    bool isPng = false;
    quint16 bitsPerPixel = 0;  ///< of the directory entry

    /// Pixels, for the choice of the largest frame.
    [[nodiscard]] std::uint64_t area() const { return std::uint64_t{width} * height; }
};

/// The frames of an icon file in the order of its directory. Entries whose data lie outside the file
/// or whose own header makes no sense are left out, as are those that would bring the frames together to
/// more than four times the file; bytes that are no icon file give no frame.
[[nodiscard]] std::vector<IcoFrame> readIco(const QByteArray& file);

/// A file that any decoder of its kind reads: the PNG as it is, or an icon file of this one frame.
[[nodiscard]] QByteArray standaloneFile(const IcoFrame& frame);

/// One image of an icon to be written.
struct IcoImage {
    int width = 0;   ///< pixels, 1 to 256
    int height = 0;  ///< pixels, 1 to 256
    QByteArray png;  ///< a whole PNG file
};

/// An icon of 32-bit images in the order given. Offsets and count agree with the images present. No
/// image gives no bytes.
[[nodiscard]] QByteArray writeIco(const std::vector<IcoImage>& images);

}  // namespace sorvik::imaging
