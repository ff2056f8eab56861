#include "imaging/sips/upright.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/tiff_directory.h"

namespace sorvik::sips {

namespace {

constexpr std::uint16_t orientationTag = 0x0112;
constexpr std::uint16_t exifPointerTag = 0x8769;
constexpr std::uint16_t pixelWidthTag = 0xA002;
constexpr std::uint16_t pixelHeightTag = 0xA003;
constexpr std::uint16_t shortType = 3;

void setShort(std::vector<std::byte>& exif, const TiffDirectory& directory, std::uint64_t place, unsigned value) {
    const auto high = std::byte(value >> 8);
    const auto low = std::byte(value & 0xFF);
    const bool big = directory.order == std::endian::big;
    exif[place] = big ? high : low;
    exif[place + 1] = big ? low : high;
}

void swapSides(std::vector<std::byte>& exif, const TiffDirectory& first) {
    const auto place = firstNumber(exif, first, exifPointerTag);
    const auto directory = readTiffDirectoryAt(exif, first.order, first.big, place);
    if (!directory) {
        return;
    }
    const TiffEntry* width = directory->find(pixelWidthTag);
    const TiffEntry* height = directory->find(pixelHeightTag);
    if (width == nullptr || height == nullptr || width->type != height->type || width->count != 1 ||
        height->count != 1) {
        return;
    }
    const auto at = [&](const TiffEntry* entry) {
        return exif.begin() + static_cast<std::ptrdiff_t>(entry->valuePlace);
    };
    std::swap_ranges(at(width), at(width) + static_cast<std::ptrdiff_t>(width->byteCount), at(height));
}

void declareExifUpright(std::vector<std::byte>& exif, int orientation) {
    const auto directory = readTiffDirectory(exif);
    if (!directory) {
        return;
    }
    if (const TiffEntry* entry = directory->find(orientationTag);
        entry != nullptr && entry->type == shortType && entry->count >= 1) {
        setShort(exif, *directory, entry->valuePlace, 1);
    }
    if (orientation == 1) {
        return;
    }
    if (directory->nextPlace != 0) {
        const auto link = exif.begin() + static_cast<std::ptrdiff_t>(directory->nextPlace);
        std::fill(link, link + (directory->big ? 8 : 4), std::byte{0});
    }
    if (orientation >= 5) {
        swapSides(exif, *directory);
    }
}

/// XMP repeats the tag as an attribute or an element with one digit.
void declareXmpUpright(std::vector<std::byte>& xmp) {
    for (const std::string_view opening :
         {std::string_view("tiff:Orientation=\""), std::string_view("tiff:Orientation='"),
          std::string_view("<tiff:Orientation>")}) {
        const std::size_t found = textOf(xmp).find(opening);
        const std::size_t digit = found + opening.size();
        if (found == std::string_view::npos || digit >= xmp.size()) {
            continue;
        }
        if (xmp[digit] >= std::byte{'1'} && xmp[digit] <= std::byte{'8'}) {
            xmp[digit] = std::byte{'1'};
        }
    }
}

}  // namespace

int orientationOf(std::span<const std::byte> exif) {
    const auto directory = readTiffDirectory(exif);
    const std::uint64_t orientation = directory ? firstNumber(exif, *directory, orientationTag) : 0;
    return orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
}

void declareUpright(codecs::PictureMetadata& metadata, int orientation) {
    declareExifUpright(metadata.exif, orientation);
    declareXmpUpright(metadata.xmp);
}

}  // namespace sorvik::sips
