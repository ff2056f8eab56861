#include "codecs/bmp_writer.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>
#include <span>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "codecs/byte_sink.h"
#include "codecs/descriptor_io.h"
#include "codecs/little_endian.h"
#include "codecs/row_counter.h"
#include "codecs/samples.h"

namespace sorvik::codecs {
namespace {

constexpr std::uint32_t fileHeaderSize = 14;
constexpr std::uint32_t infoHeaderSize = 40;
constexpr std::uint32_t v5HeaderSize = 124;
constexpr std::uint32_t greyColours = 256;
constexpr std::uint32_t compressionNone = 0;         // BI_RGB
constexpr std::uint32_t compressionMasks = 3;        // BI_BITFIELDS
constexpr std::uint32_t spaceSrgb = 0x73524742;      // LCS_sRGB
constexpr std::uint32_t spaceEmbedded = 0x4d424544;  // PROFILE_EMBEDDED
constexpr std::uint32_t intentPerceptual = 4;        // LCS_GM_IMAGES
constexpr std::size_t bandBytes = std::size_t{1024} * 1024;
constexpr double metresPerInch = 0.0254;

// Where the parts of one file lie. The oldest header stands wherever it says enough, as every reader
// knows it; alpha and profiles need the newest.
struct BmpShape {
    std::uint32_t bitsPerPixel = 24;
    std::uint32_t headerSize = infoHeaderSize;
    std::uint32_t colours = 0;      ///< in the table
    std::size_t stride = 0;         ///< bytes a row, a multiple of four
    std::size_t pixelsOffset = 0;   ///< in the file
    std::size_t profileOffset = 0;  ///< in the file, behind the pixels
    std::size_t fileSize = 0;
};

bool embedsProfile(const PixelLayout& layout, const PictureMetadata& metadata) {
    return layout.channels >= 3 && profileFits(metadata.icc, layout);
}

BmpShape shapeOf(const PixelLayout& layout, const PictureMetadata& metadata) {
    const bool profile = embedsProfile(layout, metadata);
    BmpShape shape;
    shape.bitsPerPixel = layout.hasAlpha() ? 32 : layout.channels == 1 ? 8 : 24;
    shape.headerSize = layout.hasAlpha() || profile ? v5HeaderSize : infoHeaderSize;
    shape.colours = layout.channels == 1 ? greyColours : 0;
    shape.stride = (std::size_t{layout.width} * shape.bitsPerPixel / 8 + 3) / 4 * 4;
    shape.pixelsOffset = fileHeaderSize + shape.headerSize + std::size_t{4} * shape.colours;
    shape.profileOffset = shape.pixelsOffset + shape.stride * layout.height;
    shape.fileSize = shape.profileOffset + (profile ? metadata.icc.size() : 0);
    return shape;
}

std::uint32_t dotsPerMetre(double dotsPerInch) {
    constexpr double largest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::uint32_t>(std::clamp(std::round(dotsPerInch / metresPerInch), 0.0, largest));
}

void appendV5Fields(LittleEndianBytes& header, const BmpShape& shape, const PixelLayout& layout,
                    const PictureMetadata& metadata) {
    const bool masks = layout.hasAlpha();
    for (const std::uint32_t mask : {0x00ff0000U, 0x0000ff00U, 0x000000ffU, 0xff000000U}) {
        header.u32(masks ? mask : 0);
    }
    const bool profile = embedsProfile(layout, metadata);
    header.u32(profile ? spaceEmbedded : spaceSrgb).zeros(48).u32(intentPerceptual);  // end points and gammas
    header.u32(profile ? static_cast<std::uint32_t>(shape.profileOffset - fileHeaderSize) : 0);
    header.u32(profile ? static_cast<std::uint32_t>(metadata.icc.size()) : 0).u32(0);
}

std::vector<std::byte> headerBytes(const BmpShape& shape, const PixelLayout& layout, const PictureMetadata& metadata) {
    LittleEndianBytes header;
    header.u16('B' | 'M' << 8).u32(static_cast<std::uint32_t>(shape.fileSize)).u32(0);
    header.u32(static_cast<std::uint32_t>(shape.pixelsOffset));
    header.u32(shape.headerSize).u32(layout.width).u32(layout.height).u16(1).u16(shape.bitsPerPixel);
    header.u32(layout.hasAlpha() ? compressionMasks : compressionNone);
    header.u32(static_cast<std::uint32_t>(shape.stride * layout.height));
    header.u32(dotsPerMetre(metadata.dotsPerInchX)).u32(dotsPerMetre(metadata.dotsPerInchY));
    header.u32(shape.colours).u32(0);
    if (shape.headerSize == v5HeaderSize) {
        appendV5Fields(header, shape, layout, metadata);
    }
    for (std::uint32_t grey = 0; grey < shape.colours; ++grey) {
        header.u32(grey * 0x010101U);
    }
    return header.bytes();
}

void convertRow(const std::byte* from, const PixelLayout& layout, std::byte* to) {
    const auto channels = static_cast<std::size_t>(layout.channels);
    if (channels == 1) {
        std::copy_n(from, layout.width, to);
        return;
    }
    const std::size_t green = channels >= 3 ? 1 : 0;
    const std::size_t blue = channels >= 3 ? 2 : 0;
    const std::size_t size = channels == 3 ? 3 : 4;
    for (std::size_t x = 0; x < layout.width; ++x, from += channels, to += size) {
        to[0] = from[blue];
        to[1] = from[green];
        to[2] = from[0];
        if (size == 4) {
            to[3] = from[channels - 1];
        }
    }
}

// Gathers rows from the end of a band towards its start, in the order in which they lie in the file.
class BmpWriter final : public RowWriter {
public:
    BmpWriter(int fileDescriptor, const PixelLayout& layout, const PictureMetadata& metadata)
        : fileDescriptor_(fileDescriptor),
          layout_(layout),
          counter_(layout.height),
          shape_(shapeOf(layout, metadata)),
          band_(std::max<std::size_t>(1, bandBytes / shape_.stride) * shape_.stride),
          bandStart_(band_.size()) {
        if (shape_.fileSize > std::numeric_limits<std::uint32_t>::max()) {
            throw SinkError(std::generic_category().message(EFBIG), EFBIG);
        }
        writeAllAt(fileDescriptor_, headerBytes(shape_, layout, metadata), 0);
        if (embedsProfile(layout, metadata)) {
            writeAllAt(fileDescriptor_, metadata.icc, shape_.profileOffset);
        }
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        for (std::uint32_t y = 0; y < count; ++y) {
            if (bandStart_ == 0) {
                writeBand();
            }
            counter_.take(1);
            bandStart_ -= shape_.stride;
            convertRow(rows + y * stride, layout_, band_.data() + bandStart_);
        }
    }

    void finish() override {
        counter_.requireAll();
        writeBand();
    }

private:
    void writeBand() {
        writeAllAt(fileDescriptor_, std::span(band_).subspan(bandStart_),
                   shape_.pixelsOffset + counter_.left() * shape_.stride);
        bandStart_ = band_.size();
    }

    int fileDescriptor_;
    PixelLayout layout_;
    RowCounter counter_;
    BmpShape shape_;
    std::vector<std::byte> band_;
    std::size_t bandStart_;  ///< of the rows gathered, within the band
};

}  // namespace

std::unique_ptr<RowWriter> makeBmpWriter(int fileDescriptor, const PixelLayout& layout,
                                         const PictureMetadata& metadata) {
    requireValid(layout);
    if (layout.bitsPerSample != 8) {
        throw std::invalid_argument("a bitmap holds 8 bits a sample");
    }
    return std::make_unique<BmpWriter>(fileDescriptor, layout, metadata);
}

}  // namespace sorvik::codecs
