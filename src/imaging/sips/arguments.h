#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sorvik::sips {

enum class Format { jpeg, png, tiff, gif, bmp, heic, pdf, webp };

/// What a target can hold. Where it can't, the pixels are brought to what it can.
struct FormatRow {
    Format format;
    std::string_view name;  ///< as on the command line
    bool alpha;             ///< else transparency is laid on white
    bool deep;              ///< 16 bits a sample, else 8
    bool profile;           ///< an ICC profile, else the pixels are brought to sRGB
    bool grey;              ///< a profile of grey too; else pixels of one channel are written as RGB
};

inline constexpr std::array formats = {
    FormatRow{Format::jpeg, "jpeg", false, false, true, true},
    FormatRow{Format::png, "png", true, true, true, true},
    FormatRow{Format::tiff, "tiff", true, true, true, true},
    FormatRow{Format::gif, "gif", true, false, false, true},
    FormatRow{Format::bmp, "bmp", true, false, false, true},
    FormatRow{Format::heic, "heic", true, true, true, false},
    FormatRow{Format::pdf, "pdf", true, false, true, true},
    FormatRow{Format::webp, "webp", true, false, true, false},
};

static_assert([] {
    for (std::size_t i = 0; i < formats.size(); ++i) {
        if (static_cast<std::size_t>(formats[i].format) != i) {
            return false;
        }
    }
    return true;
}());

[[nodiscard]] constexpr const FormatRow& rowOf(Format format) { return formats[static_cast<std::size_t>(format)]; }

/// sips [-s KEY VALUE]... INPUT --out OUTPUT
struct ConvertRequest {
    std::string input;
    std::string output;
    Format format = Format::png;
    std::optional<int> quality;  ///< 0 to 100, of jpeg, heic and webp
    std::optional<int> level;    ///< 0 to 9, compression of png
    bool intermediate = false;   ///< png for one reader, thrown away afterwards
    bool toSrgb = false;         ///< pixels through the profile to sRGB, profile dropped
    bool stripMetadata = false;  ///< no EXIF, XMP, IPTC
    std::vector<int> iconSizes;  ///< sides in pixels; not empty: OUTPUT.<side> each, instead of OUTPUT
};

/// sips --carry-metadata FROM TO [QUALITY]
struct CarryRequest {
    std::string from;
    std::string to;
    std::optional<int> quality{};  ///< 0 to 100, where an AVIF has to be encoded anew
};

/// sips --describe FILE
struct DescribeRequest {
    std::string path;
};

/// sips --keep-looks FROM TO
struct KeepLooksRequest {
    std::string from;
    std::string to;
};

/// sips --recode-jpeg FROM TO
struct RecodeRequest {
    std::string from;
    std::string to;
};

using Request = std::variant<ConvertRequest, CarryRequest, DescribeRequest, KeepLooksRequest, RecodeRequest>;

/// Arguments without the program's name. Throws Failure (badUsage; failed for a format that can't be
/// written). Paths are taken as they are.
[[nodiscard]] Request parseArguments(std::span<const std::string_view> arguments);

}  // namespace sorvik::sips
