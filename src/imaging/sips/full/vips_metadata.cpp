#include "imaging/sips/full/vips_metadata.h"

#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/full/exiv2_metadata.h"
#include "imaging/sips/photoshop_block.h"

namespace sorvik::sips {

namespace {

using namespace std::string_view_literals;

std::span<const std::byte> blobOf(const vips::VImage& image, const char* field) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (image.get_typeof(field) != VIPS_TYPE_BLOB || vips_image_get_blob(image.get_image(), field, &data, &size) != 0) {
        return {};
    }
    return {static_cast<const std::byte*>(data), size};
}

std::vector<std::byte> copyOf(std::span<const std::byte> bytes) { return {bytes.begin(), bytes.end()}; }

/// Loaders hand out the block with or without the mark that JPEG puts in front.
std::vector<std::byte> exifOf(const vips::VImage& image) {
    constexpr std::string_view mark = "Exif\0\0"sv;
    const auto blob = blobOf(image, VIPS_META_EXIF_NAME);
    const auto exif = holdsAt(blob, 0, mark) ? blob.subspan(mark.size()) : blob;
    return holdsAt(exif, 0, "II*\0"sv) || holdsAt(exif, 0, "MM\0*"sv) ? copyOf(exif) : std::vector<std::byte>();
}

std::vector<std::byte> iptcOf(const vips::VImage& image) {
    const auto blob = blobOf(image, VIPS_META_IPTC_NAME);
    constexpr std::byte recordMark{0x1C};
    return !blob.empty() && blob[0] == recordMark ? copyOf(blob) : iptcOfPhotoshopBlock(blob);
}

/// In HEIC and AVIF the packet is one of several numbered texts.
std::vector<std::byte> xmpOf(const vips::VImage& image) {
    constexpr int mostTexts = 16;
    auto packet = blobOf(image, VIPS_META_XMP_NAME);
    for (int i = 0; packet.empty() && i < mostTexts; ++i) {
        const auto text = blobOf(image, ("heif-mime-" + std::to_string(i)).c_str());
        packet = textOf(text).find("xmpmeta") != std::string_view::npos ? text : packet;
    }
    return copyOf(packet);
}

/// libvips says one pixel a millimetre where a file says nothing.
double dotsPerInch(double pixelsPerMillimetre) {
    constexpr double millimetresPerInch = 25.4;
    const bool said = pixelsPerMillimetre > 0 && std::abs(pixelsPerMillimetre - 1) > 1e-6;
    return said ? std::round(pixelsPerMillimetre * millimetresPerInch * 100) / 100 : 0;
}

void fill(std::vector<std::byte>& target, std::vector<std::byte>&& found) {
    if (target.empty()) {
        target = std::move(found);
    }
}

}  // namespace

codecs::PictureMetadata metadataOf(const vips::VImage& image, ContentKind kind, std::span<const std::byte> file) {
    codecs::PictureMetadata metadata;
    metadata.icc = profileOf(image);
    metadata.exif = exifOf(image);
    metadata.xmp = xmpOf(image);
    metadata.iptc = iptcOf(image);
    metadata.dotsPerInchX = dotsPerInch(image.xres());
    metadata.dotsPerInchY = dotsPerInch(image.yres());
    if (kind == ContentKind::tiff || kind == ContentKind::png || kind == ContentKind::psd) {
        codecs::PictureMetadata found = readWithExiv2(file);
        fill(metadata.exif, std::move(found.exif));
        fill(metadata.xmp, std::move(found.xmp));
        fill(metadata.iptc, std::move(found.iptc));
    }
    return metadata;
}

std::vector<std::byte> profileOf(const vips::VImage& image) { return copyOf(blobOf(image, VIPS_META_ICC_NAME)); }

}  // namespace sorvik::sips
