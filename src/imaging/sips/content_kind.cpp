#include "imaging/sips/content_kind.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/tiff_directory.h"

namespace sorvik::sips {

namespace {

using namespace std::string_view_literals;

struct Magic {
    ContentKind kind;
    std::size_t offset;
    std::string_view bytes;
};

constexpr std::array magics = {
    Magic{ContentKind::jpeg, 0, "\xFF\xD8\xFF"sv},
    Magic{ContentKind::png, 0, "\x89PNG\r\n\x1A\n"sv},
    Magic{ContentKind::gif, 0, "GIF87a"sv},
    Magic{ContentKind::gif, 0, "GIF89a"sv},
    Magic{ContentKind::webp, 8, "WEBPVP8"sv},
    Magic{ContentKind::cameraRaw, 0, "II*\0\x10\0\0\0CR"sv},
    Magic{ContentKind::cameraRaw, 0, "FUJIFILMCCD-RAW"sv},
    Magic{ContentKind::cameraRaw, 0, "IIU\0"sv},
    Magic{ContentKind::cameraRaw, 0, "IIRO"sv},
    Magic{ContentKind::cameraRaw, 4, "ftypcrx"sv},
    Magic{ContentKind::tiff, 0, "II*\0"sv},
    Magic{ContentKind::tiff, 0, "MM\0*"sv},
    Magic{ContentKind::tiff, 0, "II+\0"sv},
    Magic{ContentKind::tiff, 0, "MM\0+"sv},
    Magic{ContentKind::psd, 0, "8BPS\0\1"sv},
    Magic{ContentKind::ico, 0, "\0\0\1\0"sv},
    Magic{ContentKind::bmp, 0, "BM"sv},
    Magic{ContentKind::svgz, 0, "\x1F\x8B\x08"sv},
    Magic{ContentKind::heif, 4, "ftypheic"sv},
    Magic{ContentKind::heif, 4, "ftypheix"sv},
    Magic{ContentKind::heif, 4, "ftypheim"sv},
    Magic{ContentKind::heif, 4, "ftypheis"sv},
    Magic{ContentKind::heif, 4, "ftyphevc"sv},
    Magic{ContentKind::heif, 4, "ftyphevx"sv},
    Magic{ContentKind::heif, 4, "ftypmif1"sv},
    Magic{ContentKind::heif, 4, "ftypmsf1"sv},
    Magic{ContentKind::heif, 4, "ftypavif"sv},
    Magic{ContentKind::heif, 4, "ftypavis"sv},
};

// Readers of PDF allow a little before the header; XML may begin with comments and a document type.
constexpr std::size_t pdfHeaderReach = 1024;
constexpr std::size_t svgElementReach = 0x10000;

std::span<const std::byte> firstBytes(std::span<const std::byte> bytes, std::size_t count) {
    return bytes.first(std::min(bytes.size(), count));
}

/// UTF-16 is read as its ASCII characters.
bool looksLikeSvg(std::span<const std::byte> bytes) {
    std::string text(textOf(firstBytes(bytes, svgElementReach)));
    std::erase(text, '\0');
    for (const std::string_view mark : {"\xEF\xBB\xBF"sv, "\xFF\xFE"sv, "\xFE\xFF"sv}) {
        if (text.starts_with(mark)) {
            text.erase(0, mark.size());
        }
    }
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string::npos || text[start] != '<') {
        return false;
    }
    return text.find("<svg", start) != std::string::npos;
}

bool holdsCompressedSvg(std::span<const std::byte> bytes) {
    std::array<std::byte, 0x4000> beginning{};
    z_stream stream{};
    constexpr int gzipOnly = 15 + 16;
    if (inflateInit2(&stream, gzipOnly) != Z_OK) {
        return false;
    }
    const std::span<const std::byte> compressed = firstBytes(bytes, beginning.size());
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(compressed.data()));
    stream.avail_in = static_cast<uInt>(compressed.size());
    stream.next_out = reinterpret_cast<Bytef*>(beginning.data());
    stream.avail_out = static_cast<uInt>(beginning.size());
    inflate(&stream, Z_SYNC_FLUSH);
    const std::size_t length = stream.total_out;
    inflateEnd(&stream);
    return looksLikeSvg(std::span(beginning).first(length));
}

/// Camera files are TIFFs whose first directory is a small preview, or says how the sensor lies.
bool isCameraTiff(std::span<const std::byte> bytes) {
    constexpr std::uint16_t newSubfileType = 254;
    constexpr std::uint16_t compression = 259;
    constexpr std::uint16_t photometric = 262;
    constexpr std::uint16_t subDirectories = 330;
    constexpr std::uint16_t dngVersion = 50706;
    const auto directory = readTiffDirectory(bytes);
    if (!directory) {
        return false;
    }
    const auto number = [&](std::uint16_t tag) { return firstNumber(bytes, *directory, tag); };
    constexpr std::uint64_t colourFilterArray = 32803;
    constexpr std::uint64_t linearRaw = 34892;
    constexpr std::uint64_t oldStyleJpeg = 6;
    const bool sensor = number(photometric) == colourFilterArray || number(photometric) == linearRaw;
    const bool preview = (number(newSubfileType) & 1) != 0 || number(compression) == oldStyleJpeg;
    return directory->find(dngVersion) != nullptr || sensor || (preview && directory->find(subDirectories) != nullptr);
}

}  // namespace

ContentKind contentKindOf(std::span<const std::byte> bytes) {
    const auto magic = std::ranges::find_if(
        magics, [&](const Magic& candidate) { return holdsAt(bytes, candidate.offset, candidate.bytes); });
    const ContentKind kind = magic == magics.end() ? ContentKind::unknown : magic->kind;
    switch (kind) {
        case ContentKind::tiff:
            return isCameraTiff(bytes) ? ContentKind::cameraRaw : ContentKind::tiff;
        case ContentKind::svgz:
            return holdsCompressedSvg(bytes) ? ContentKind::svgz : ContentKind::unknown;
        case ContentKind::unknown:
            if (textOf(firstBytes(bytes, pdfHeaderReach)).find("%PDF-") != std::string_view::npos) {
                return ContentKind::pdf;
            }
            return looksLikeSvg(bytes) ? ContentKind::svg : ContentKind::unknown;
        default:
            return kind;
    }
}

}  // namespace sorvik::sips
