#include "imaging/sips/looks.h"

#include <bit>

#include "codecs/little_endian.h"
#include "codecs/png_chunks.h"
#include "imaging/sips/byte_reader.h"
#include "imaging/sips/icc_profile.h"
#include "imaging/sips/jpeg_decoder.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/png_decoder.h"
#include "imaging/sips/riff_chunks.h"
#include "imaging/sips/upright.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;

constexpr std::uint16_t orientationTag = 274;

Looks looksIn(const codecs::PixelLayout& layout, const codecs::PictureMetadata& metadata, int channels) {
    return {layout.width,           layout.height, channels, orientationOf(metadata.exif),
            !metadata.exif.empty(), metadata.icc,  {}};
}

Looks jpegLooks(Bytes bytes) {
    const JpegDecoder decoder(bytes);
    return looksIn(decoder.layout(), decoder.metadata(), decoder.components());
}

/// Nothing where a profile or the sRGB chunk says more (PNG, 4.2: iCCP before sRGB before these), or where they say
/// no more than sRGB.
std::vector<std::byte> pngCalibration(Bytes bytes) {
    constexpr std::uint32_t srgbGamma = 45455;  // in 100,000ths
    std::vector<std::byte> calibration;
    bool linearised = false;
    std::size_t at = codecs::pngSignature.size();
    for (auto chunk = codecs::readChunk(bytes, at); chunk; chunk = codecs::readChunk(bytes, at)) {
        if (chunk->type == codecs::chunkType("IDAT")) {
            break;
        }
        if (chunk->type == codecs::chunkType("iCCP") || chunk->type == codecs::chunkType("sRGB")) {
            return {};
        }
        const bool gamma = chunk->type == codecs::chunkType("gAMA");
        if (gamma || chunk->type == codecs::chunkType("cHRM")) {
            const Bytes whole = bytes.subspan(at, chunk->end - at);
            calibration.insert(calibration.end(), whole.begin(), whole.end());
            linearised |= gamma && ByteReader(chunk->data, std::endian::big).u32(0) != srgbGamma;
        }
        at = chunk->end;
    }
    return linearised ? calibration : std::vector<std::byte>();
}

Looks pngLooks(Bytes bytes) {
    const PngDecoder decoder(bytes);
    Looks looks = looksIn(decoder.layout(), decoder.metadata(), decoder.layout().channels < 3 ? 1 : 3);
    looks.calibration = pngCalibration(bytes);
    return looks;
}

Looks webpLooks(Bytes bytes) {
    Looks looks;
    looks.channels = 3;
    if (const auto size = claimedSize(ContentKind::webp, bytes)) {
        looks.width = size->width;
        looks.height = size->height;
    }
    for (const RiffChunk& chunk : riffChunksOf(bytes).chunks) {
        if (chunk.type == "EXIF") {
            looks.oriented = true;
            looks.orientation = orientationOf(exifStream(chunk.data));
        } else if (chunk.type == "ICCP") {
            looks.icc.assign(chunk.data.begin(), chunk.data.end());
        }
    }
    return looks;
}

/// Colour channels by PhotometricInterpretation (TIFF 6.0, section 8 and 16).
int tiffChannels(std::uint64_t photometric) {
    switch (photometric) {
        case 0:
        case 1:
            return 1;
        case 2:
        case 3:
        case 6:
            return 3;
        case 5:
            return 4;
        default:
            return 0;
    }
}

}  // namespace

Looks tiffLooks(Bytes bytes, const TiffDirectory& directory) {
    constexpr std::uint16_t widthTag = 256;
    constexpr std::uint16_t heightTag = 257;
    constexpr std::uint16_t photometricTag = 262;
    constexpr std::uint16_t profileTag = 34675;
    const auto number = [&](std::uint16_t tag) { return firstNumber(bytes, directory, tag); };
    Looks looks{number(widthTag), number(heightTag), tiffChannels(number(photometricTag)), 1, false, {}, {}};
    if (const std::uint64_t orientation = number(orientationTag); orientation >= 1 && orientation <= 8) {
        looks.orientation = static_cast<int>(orientation);
        looks.oriented = true;
    }
    if (const TiffEntry* profile = directory.find(profileTag); profile != nullptr) {
        const Bytes icc =
            bytes.subspan(static_cast<std::size_t>(profile->valuePlace), static_cast<std::size_t>(profile->byteCount));
        looks.icc.assign(icc.begin(), icc.end());
    }
    return looks;
}

std::optional<Looks> looksOf(ContentKind kind, Bytes bytes) {
    switch (kind) {
        case ContentKind::jpeg:
            return jpegLooks(bytes);
        case ContentKind::png:
            return pngLooks(bytes);
        case ContentKind::webp:
            return webpLooks(bytes);
        case ContentKind::tiff: {
            const auto directory = readTiffDirectory(bytes);
            return directory ? std::optional(tiffLooks(bytes, *directory)) : std::nullopt;
        }
        default:
            return std::nullopt;
    }
}

Looks lackingLooks(const Looks& original, const Looks& kept) {
    Looks lacking;
    // Pixels that were turned upright must not be turned again.
    const bool sidesStay = original.width == kept.width && original.height == kept.height;
    if (sidesStay && !kept.oriented) {
        lacking.orientation = original.orientation;
    }
    const bool sameChannels = original.channels == kept.channels && profileChannels(original.icc) == kept.channels;
    if (sameChannels && kept.icc.empty() && !isSrgbProfile(original.icc)) {
        lacking.icc = original.icc;
    }
    if (original.channels == kept.channels && kept.icc.empty() && kept.calibration.empty()) {
        lacking.calibration = original.calibration;
    }
    return lacking;
}

bool lacksAny(const Looks& lacking) {
    return lacking.orientation != 1 || !lacking.icc.empty() || !lacking.calibration.empty();
}

std::vector<std::byte> exifOfOrientation(int orientation) {
    constexpr std::uint32_t shortType = 3;
    constexpr std::uint32_t directoryPlace = 8;
    codecs::LittleEndianBytes tiff;
    tiff.u16('I' | 'I' << 8).u16(42).u32(directoryPlace);
    tiff.u16(1).u16(orientationTag).u16(shortType).u32(1).u32(static_cast<std::uint32_t>(orientation));
    return tiff.u32(0).bytes();
}

}  // namespace sorvik::sips
