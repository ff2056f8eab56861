#include "codecs/png_metadata.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "codecs/big_endian.h"
#include "codecs/samples.h"
#include "codecs/zlib_stream.h"

namespace sorvik::codecs {
namespace {

using Bytes = std::vector<std::byte>;

constexpr int denseLevel = 9;  // libdeflate's scale
constexpr double metresPerInch = 0.0254;
constexpr std::byte metreUnit{1};
constexpr std::string_view profileKeyword = "ICC Profile";
constexpr std::string_view xmpKeyword = "XML:com.adobe.xmp";
constexpr std::string_view iptcKeyword = "Raw profile type iptc";

// The text that ImageMagick and its readers agree on: a name, a length in a field of eight, and the
// bytes in hexadecimal, 36 to a line.
constexpr std::string_view rawProfileName = "iptc";
constexpr std::size_t rawProfileLengthWidth = 8;
constexpr std::size_t rawProfileBytesPerLine = 36;
constexpr std::string_view hexDigits = "0123456789abcdef";

void append(Bytes& bytes, std::string_view text) {
    const auto* start = reinterpret_cast<const std::byte*>(text.data());
    bytes.insert(bytes.end(), start, start + text.size());
}

void append(Bytes& bytes, std::span<const std::byte> more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

void appendKeyword(Bytes& bytes, std::string_view keyword) {
    append(bytes, keyword);
    bytes.push_back(std::byte{0});
}

std::string rawProfileText(const Bytes& profile) {
    const std::string length = std::to_string(profile.size());
    std::string text("\n");
    text.append(rawProfileName).append("\n");
    text.append(rawProfileLengthWidth - std::min(rawProfileLengthWidth, length.size()), ' ').append(length);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        if (i % rawProfileBytesPerLine == 0) {
            text += '\n';
        }
        text += hexDigits[std::to_integer<unsigned>(profile[i]) >> 4U];
        text += hexDigits[std::to_integer<unsigned>(profile[i]) & 15U];
    }
    return text + "\n";
}

// The bytes that rawProfileText made a text of.
std::optional<Bytes> rawProfileBytes(std::string_view text) {
    const std::size_t digitsStart = text.find('\n', rawProfileName.size() + 2);
    if (digitsStart == std::string_view::npos) {
        return std::nullopt;
    }
    Bytes bytes;
    for (std::size_t i = digitsStart; i < text.size(); ++i) {
        if (text[i] == '\n') {
            continue;
        }
        std::uint8_t value = 0;
        const auto pair = text.substr(i++, 2);
        if (std::from_chars(pair.data(), pair.data() + pair.size(), value, 16).ptr != pair.data() + 2) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::byte>(value));
    }
    return bytes;
}

// A keyword, the compression method 0 and a zlib stream: the shape of iCCP and zTXt.
Bytes compressedChunk(std::string_view keyword, std::span<const std::byte> bytes, int level) {
    Bytes data;
    appendKeyword(data, keyword);
    data.push_back(std::byte{0});
    append(data, zlibCompress(bytes, level).bytes());
    return data;
}

Bytes xmpChunk(const Bytes& xmp) {
    Bytes data;
    appendKeyword(data, xmpKeyword);
    data.resize(data.size() + 4);  // not compressed, method 0, no language, no translated keyword
    append(data, xmp);
    return data;
}

std::uint32_t dotsPerMetre(double dotsPerInch) {
    return static_cast<std::uint32_t>(std::clamp(std::round(dotsPerInch / metresPerInch), 0.0, double{largestChunk}));
}

Bytes resolutionChunk(const PictureMetadata& metadata) {
    Bytes data;
    appendBigEndian32(data, dotsPerMetre(metadata.dotsPerInchX));
    appendBigEndian32(data, dotsPerMetre(metadata.dotsPerInchY));
    data.push_back(metreUnit);
    return data;
}

// Splits off the keyword; absent when the NUL behind it is missing.
std::optional<std::string_view> takeKeyword(std::span<const std::byte>& data) {
    const auto end = std::find(data.begin(), data.end(), std::byte{0});
    if (end == data.end()) {
        return std::nullopt;
    }
    const auto length = static_cast<std::size_t>(end - data.begin());
    const std::string_view keyword(reinterpret_cast<const char*>(data.data()), length);
    data = data.subspan(length + 1);
    return keyword;
}

std::optional<Bytes> readStored(std::span<const std::byte> methodAndStream) {
    if (methodAndStream.empty() || methodAndStream[0] != std::byte{0}) {
        return std::nullopt;
    }
    return zlibDecompress(methodAndStream.subspan(1), methodAndStream.size());
}

bool readProfile(std::span<const std::byte> data, PictureMetadata& metadata) {
    auto profile = takeKeyword(data) ? readStored(data) : std::nullopt;
    const bool whole = profile.has_value();
    metadata.icc = std::move(profile).value_or(Bytes());
    return whole;
}

bool readCompressedText(std::span<const std::byte> data, PictureMetadata& metadata) {
    const auto keyword = takeKeyword(data);
    if (keyword != iptcKeyword) {
        return keyword.has_value();
    }
    const auto text = readStored(data);
    auto iptc = text ? rawProfileBytes({reinterpret_cast<const char*>(text->data()), text->size()}) : std::nullopt;
    const bool whole = iptc.has_value();
    metadata.iptc = std::move(iptc).value_or(Bytes());
    return whole;
}

bool readInternationalText(std::span<const std::byte> data, PictureMetadata& metadata) {
    const auto keyword = takeKeyword(data);
    if (keyword != xmpKeyword) {
        return keyword.has_value();
    }
    const bool plain = data.size() >= 4 &&
                       std::all_of(data.begin(), data.begin() + 4, [](std::byte flag) { return flag == std::byte{0}; });
    if (plain) {
        metadata.xmp.assign(data.begin() + 4, data.end());
    }
    return plain;
}

// Whole numbers survive: a dot a metre is finer than what they lose to rounding.
double dotsPerInch(std::uint32_t perMetre) {
    const double exact = perMetre * metresPerInch;
    return dotsPerMetre(std::round(exact)) == perMetre ? std::round(exact) : exact;
}

bool readResolution(std::span<const std::byte> data, PictureMetadata& metadata) {
    if (data.size() != 9) {
        return false;
    }
    if (data[8] == metreUnit) {
        metadata.dotsPerInchX = dotsPerInch(readBigEndian32(data.data()));
        metadata.dotsPerInchY = dotsPerInch(readBigEndian32(data.data() + 4));
    }
    return true;
}

}  // namespace

void writePngMetadata(ByteSink& sink, const PixelLayout& layout, const PictureMetadata& metadata, bool deflate) {
    const auto write = [&](ChunkType type, const Bytes& data) {
        if (data.size() <= largestChunk) {
            writeChunk(sink, type, data);
        }
    };
    const int level = deflate ? denseLevel : 0;
    if (profileFits(metadata.icc, layout)) {
        write(chunkType("iCCP"), compressedChunk(profileKeyword, metadata.icc, level));
    }
    if (metadata.dotsPerInchX > 0 && metadata.dotsPerInchY > 0) {
        write(chunkType("pHYs"), resolutionChunk(metadata));
    }
    if (!metadata.exif.empty()) {
        write(chunkType("eXIf"), metadata.exif);
    }
    if (!metadata.xmp.empty()) {
        write(chunkType("iTXt"), xmpChunk(metadata.xmp));
    }
    if (!metadata.iptc.empty()) {
        const std::string text = rawProfileText(metadata.iptc);
        write(chunkType("zTXt"), compressedChunk(iptcKeyword, std::as_bytes(std::span(text)), level));
    }
}

bool readPngMetadata(const ChunkView& chunk, PictureMetadata& metadata) {
    switch (chunk.type) {
        case chunkType("iCCP"):
            return readProfile(chunk.data, metadata);
        case chunkType("pHYs"):
            return readResolution(chunk.data, metadata);
        case chunkType("eXIf"):
            metadata.exif.assign(chunk.data.begin(), chunk.data.end());
            return true;
        case chunkType("iTXt"):
            return readInternationalText(chunk.data, metadata);
        case chunkType("zTXt"):
            return readCompressedText(chunk.data, metadata);
        default:
            return true;
    }
}

}  // namespace sorvik::codecs
