#include "bundle/magick/camera_report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace sorvik::bundle {

namespace {

using namespace std::string_view_literals;

constexpr std::array tiffMagics{"II*\0"sv, "MM\0*"sv, "IIRO"sv, "IIRS"sv, "MMOR"sv, "IIU\0"sv};
constexpr std::size_t magicLength = 4;

constexpr std::string_view fujiMagic = "FUJIFILMCCD-RAW ";
constexpr std::size_t fujiPreviewOffset = 84;
constexpr std::uint64_t jpegHeadLength = 12;  // start of image, marker and length of the segment, "Exif" and two zeros

constexpr std::string_view exifMark = "Exif\0\0"sv;

// What follows the first segment of a grey JPEG of one pixel.
constexpr std::string_view onePixel =
    "\xFF\xDB\x00\x43\x00\x03\x02\x02\x02\x02\x02\x03\x02\x02\x02\x03\x03\x03\x03\x04\x06\x04\x04\x04\x04"
    "\x04\x08\x06\x06\x05\x06\x09\x08\x0A\x0A\x09\x08\x09\x09\x0A\x0C\x0F\x0C\x0A\x0B\x0E\x0B\x09\x09\x0D"
    "\x11\x0D\x0E\x0F\x10\x10\x11\x10\x0A\x0C\x12\x13\x12\x10\x13\x0F\x10\x10\x10\xFF\xC0\x00\x0B\x08\x00"
    "\x01\x00\x01\x01\x01\x11\x00\xFF\xC4\x00\x14\x00\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x03\xFF\xC4\x00\x14\x10\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\xFF\xDA\x00\x08\x01\x01\x00\x00\x3F\x00\x27\xFF\xD9"sv;

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(0, sizeof value)) {
        value = value << 8U | static_cast<unsigned char>(byte);
    }
    return value;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    const std::size_t end = text.find_last_not_of(' ');
    return start == std::string_view::npos ? std::string_view() : text.substr(start, end - start + 1);
}

// Of these zero means that it is not known.
constexpr std::array neverZero{"exif:ExposureTime"sv, "exif:FNumber"sv, "exif:FocalLength"sv,
                               "exif:FocalLengthIn35mmFilm"sv, "exif:ISOSpeedRatings"sv};
constexpr std::array decimals{"exif:FNumber"sv, "exif:FocalLength"sv};

// Of the thumbnail, the carrier, the structure or the decoder, but not of the picture; or of use to its maker only.
constexpr std::array alienKeys{"exif:thumbnail:"sv,
                               "exif:MakerNote"sv,
                               "exif:UserComment"sv,
                               "exif:ImageWidth"sv,
                               "exif:ImageLength"sv,
                               "exif:BitsPerSample"sv,
                               "exif:Strip"sv,
                               "icc:"sv,
                               "date:"sv,
                               "jpeg:"sv,
                               "signature"sv,
                               "unknown"sv,
                               "tiff:software"sv};

// Exif 2.3 gave tag 34855 another name; what shows the properties knows it by the old one.
constexpr std::string_view newSpeedName = "exif:PhotographicSensitivity";
constexpr std::string_view oldSpeedName = "exif:ISOSpeedRatings";

// Zero as a time, west and east of Greenwich.
constexpr std::array zeroDates{"1970:01:01"sv, "1969:12:31"sv};

template <typename Words>
bool startsWithAny(std::string_view text, const Words& words) {
    return std::ranges::any_of(words, [&](std::string_view word) { return text.starts_with(word); });
}

struct Rational {
    double numerator = 0;
    double denominator = 1;
};

std::optional<Rational> readRational(std::string_view text) {
    Rational result;
    const char* const end = text.data() + text.size();
    auto read = std::from_chars(text.data(), end, result.numerator);
    if (read.ec == std::errc() && read.ptr != end && *read.ptr == '/') {
        read = std::from_chars(read.ptr + 1, end, result.denominator);
    }
    return read.ec == std::errc() && read.ptr == end ? std::optional(result) : std::nullopt;
}

std::string shortNumber(double value) {
    std::array<char, 32> digits{};
    const auto result = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::general, 6);
    return {digits.data(), result.ptr};
}

/// Short times as a fraction of a second, as cameras show them.
std::string exposureText(double seconds) {
    constexpr double longestFraction = 0.25;
    return seconds > longestFraction ? shortNumber(seconds) : "1/" + shortNumber(std::round(1 / seconds));
}

/// Takes out what LibRaw makes of an exposure that it doesn't know: both exponents zero, a second at f/1.
void dropPlaceholders(std::string& properties) {
    constexpr std::array lines{"    exif:ExposureTime: 1\n"sv, "    exif:FNumber: 1\n"sv};
    const auto stands = [&](std::string_view line) { return properties.find(line) != std::string::npos; };
    if (!std::ranges::all_of(lines, stands)) {
        return;
    }
    for (const std::string_view line : lines) {
        properties.erase(properties.find(line), line.size());
    }
}

/// As it is shown; empty when it says nothing.
std::string shownValue(std::string_view key, std::string_view value) {
    const auto rational = readRational(value);
    const bool known = !rational || (rational->denominator != 0 &&
                                     (rational->numerator > 0 || std::ranges::find(neverZero, key) == neverZero.end()));
    if (!known || startsWithAny(value, zeroDates)) {
        return {};
    }
    if (rational && key == "exif:ExposureTime") {
        return exposureText(rational->numerator / rational->denominator);
    }
    if (rational && std::ranges::find(decimals, key) != decimals.end()) {
        return shortNumber(rational->numerator / rational->denominator);
    }
    return std::string(value);
}

}  // namespace

std::optional<std::uint64_t> cameraTiffOffset(std::string_view head) {
    if (startsWithAny(head, tiffMagics)) {
        return 0;
    }
    if (!head.starts_with(fujiMagic) || head.size() < fujiPreviewOffset + sizeof(std::uint32_t)) {
        return std::nullopt;
    }
    return bigEndian(head.substr(fujiPreviewOffset)) + jpegHeadLength;
}

std::string exifCarrier(std::string_view tiff) {
    if (!startsWithAny(tiff, tiffMagics)) {
        return {};
    }
    tiff = tiff.substr(0, cameraHeadLength);
    const std::size_t length = 2 + exifMark.size() + tiff.size();
    std::string jpeg = "\xFF\xD8\xFF\xE1";
    jpeg += static_cast<char>(length >> 8U);
    jpeg += static_cast<char>(length & 0xFFU);
    jpeg += exifMark;
    jpeg += tiff.starts_with("II") ? tiffMagics[0] : tiffMagics[1];
    jpeg += tiff.substr(magicLength);
    jpeg += onePixel;
    return jpeg;
}

std::string cameraProperties(std::string_view report) {
    constexpr std::string_view heading = "  Properties:\n";
    constexpr std::string_view indentation = "    ";
    std::string properties;
    report.remove_prefix(std::min(report.find(heading), report.size()));
    report.remove_prefix(std::min(heading.size(), report.size()));
    while (report.starts_with(indentation)) {
        const std::string_view line = report.substr(0, report.find('\n'));
        report.remove_prefix(std::min(line.size() + 1, report.size()));
        const std::size_t split = std::min(line.find(": "), line.size());
        const std::string_view name = trimmed(line.substr(0, split));
        const std::string_view key = name == newSpeedName ? oldSpeedName : name;
        const std::string value = shownValue(key, trimmed(line.substr(std::min(split + 1, line.size()))));
        if (!value.empty() && !startsWithAny(key, alienKeys)) {
            properties.append(indentation).append(key).append(": ").append(value).append("\n");
        }
    }
    dropPlaceholders(properties);
    return properties.empty() ? properties : "Image:\n" + std::string(heading) + properties;
}

}  // namespace sorvik::bundle
