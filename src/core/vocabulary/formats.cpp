#include "core/vocabulary/formats.h"

#include <algorithm>

#include "core/vocabulary/indexed_table.h"

namespace sorvik {
namespace {

using enum ImageFormat;

struct ImageFormatRow {
    ImageFormat format = bmp;
    QLatin1StringView rawValue;
    QLatin1StringView fileExtension;
    bool compressible = false;
};

constexpr QLatin1StringView text(const char* literal) { return QLatin1StringView(literal); }

constexpr std::array imageFormats{
    ImageFormatRow{bmp, text("BMP"), text("bmp"), false},   ImageFormatRow{gif, text("GIF"), text("gif"), true},
    ImageFormatRow{heic, text("HEIC"), text("heic"), true}, ImageFormatRow{ico, text("ICO"), text("ico"), false},
    ImageFormatRow{jpeg, text("JPEG"), text("jpg"), true},  ImageFormatRow{png, text("PNG"), text("png"), true},
    ImageFormatRow{tiff, text("TIFF"), text("tiff"), true}, ImageFormatRow{webp, text("WEBP"), text("webp"), true},
    ImageFormatRow{svg, text("SVG"), text("svg"), false},   ImageFormatRow{pdf, text("PDF"), text("pdf"), true},
    ImageFormatRow{avif, text("AVIF"), text("avif"), true},
};

struct InputFormatRow {
    InputFormat format = InputFormat::bmp;
    QLatin1StringView rawValue;
    QLatin1StringView fileExtension;
    std::array<QLatin1StringView, 6> recognised;
    bool compressible = false;
    bool metadataCapable = false;
    ImageFormat compressedTo = png;
};

constexpr std::array inputFormats{
    InputFormatRow{InputFormat::bmp, text("BMP"), text("bmp"), {text("BMP")}, false, false, bmp},
    InputFormatRow{InputFormat::gif, text("GIF"), text("gif"), {text("GIF")}, true, false, gif},
    InputFormatRow{InputFormat::heic, text("HEIC"), text("heic"), {text("HEIC"), text("HEIF")}, false, true, heic},
    InputFormatRow{InputFormat::ico, text("ICO"), text("ico"), {text("ICO")}, false, false, ico},
    InputFormatRow{InputFormat::jpeg, text("JPEG"), text("jpg"), {text("JPG"), text("JPEG")}, true, true, jpeg},
    InputFormatRow{InputFormat::pdf, text("PDF"), text("pdf"), {text("PDF")}, true, true, pdf},
    InputFormatRow{InputFormat::png, text("PNG"), text("png"), {text("PNG")}, true, true, png},
    InputFormatRow{InputFormat::psd, text("PSD"), text("psd"), {text("PSD")}, false, true, png},
    InputFormatRow{InputFormat::raw,
                   text("RAW"),
                   text("raw"),
                   {text("RAW"), text("CR2"), text("NEF"), text("ARW"), text("RAF"), text("DNG")},
                   false,
                   true,
                   png},
    InputFormatRow{InputFormat::svg, text("SVG"), text("svg"), {text("SVG")}, false, false, png},
    InputFormatRow{InputFormat::tiff, text("TIFF"), text("tiff"), {text("TIF"), text("TIFF")}, true, true, tiff},
    InputFormatRow{InputFormat::webp, text("WEBP"), text("webp"), {text("WEBP")}, true, false, webp},
    InputFormatRow{InputFormat::avif, text("AVIF"), text("avif"), {text("AVIF")}, true, false, avif},
    InputFormatRow{InputFormat::eps, text("EPS"), text("eps"), {text("EPS")}, false, false, png},
    InputFormatRow{InputFormat::ai, text("AI"), text("ai"), {text("AI")}, false, false, png},
};

constexpr std::array<ImageFormat, imageFormatCount> everyImageFormat{bmp,  gif,  heic, ico, jpeg, png,
                                                                     tiff, webp, svg,  pdf, avif};

constexpr std::array<InputFormat, inputFormatCount> everyInputFormat = [] {
    std::array<InputFormat, inputFormatCount> formats{};
    std::ranges::transform(inputFormats, formats.begin(), &InputFormatRow::format);
    return formats;
}();

struct Offer {
    InputFormat input;
    std::size_t count;
    std::array<ImageFormat, 8> outputs;
};

template <typename... Outputs>
constexpr Offer offer(InputFormat input, Outputs... outputs) {
    return Offer{input, sizeof...(Outputs), {outputs...}};
}

// The first entry of a row is the input's default, and the order is that of the format menus.
// ICO has no row.
constexpr std::array offers{
    offer(InputFormat::jpeg, png, webp, tiff, bmp, heic, avif, pdf),
    offer(InputFormat::png, jpeg, webp, gif, tiff, avif, pdf),
    offer(InputFormat::gif, png, webp, avif),
    offer(InputFormat::webp, jpeg, png, gif, avif),
    offer(InputFormat::bmp, jpeg, png, webp, tiff, avif),
    offer(InputFormat::tiff, jpeg, png, pdf, avif),
    offer(InputFormat::heic, jpeg, png, tiff, avif),
    offer(InputFormat::pdf, png, jpeg, tiff),
    offer(InputFormat::raw, png, jpeg, tiff, avif),
    offer(InputFormat::svg, png, jpeg, pdf, avif),
    offer(InputFormat::avif, png, jpeg, webp, tiff, gif),
    offer(InputFormat::psd, png, jpeg, tiff, pdf, avif),
    offer(InputFormat::eps, png, jpeg, tiff, pdf, avif),
    offer(InputFormat::ai, png, jpeg, tiff, pdf, avif, svg),
};

static_assert(imageFormats.size() == imageFormatCount && isIndexedBy(imageFormats, &ImageFormatRow::format));
static_assert(inputFormats.size() == inputFormatCount && isIndexedBy(inputFormats, &InputFormatRow::format));
static_assert(std::ranges::is_sorted(everyImageFormat));
static_assert(offers.size() == inputFormatCount - 1);
static_assert(std::ranges::all_of(offers, [](const Offer& row) { return row.count > 0; }));

constexpr const ImageFormatRow& row(ImageFormat format) { return imageFormats[static_cast<std::size_t>(format)]; }
constexpr const InputFormatRow& row(InputFormat format) { return inputFormats[static_cast<std::size_t>(format)]; }

}  // namespace

QString rawValue(ImageFormat format) { return row(format).rawValue; }
QString rawValue(InputFormat format) { return row(format).rawValue; }
QString fileExtension(ImageFormat format) { return row(format).fileExtension; }
QString fileExtension(InputFormat format) { return row(format).fileExtension; }

std::optional<ImageFormat> imageFormatFromRawValue(QStringView rawValue) {
    const auto* found = std::ranges::find_if(imageFormats, [&](const auto& row) { return row.rawValue == rawValue; });
    return found == imageFormats.end() ? std::nullopt : std::optional(found->format);
}

std::optional<InputFormat> detectInputFormat(QStringView extension) {
    const QString upper = extension.toString().toUpper();
    if (upper.isEmpty()) {
        return std::nullopt;
    }
    const auto* found = std::ranges::find_if(inputFormats, [&](const auto& row) {
        return std::ranges::find(row.recognised, upper) != row.recognised.end();
    });
    return found == inputFormats.end() ? std::nullopt : std::optional(found->format);
}

QStringList recognisedExtensions() {
    QStringList extensions;
    for (const InputFormatRow& each : inputFormats) {
        for (const QLatin1StringView extension : each.recognised) {
            if (!extension.isEmpty()) {
                extensions << QString(extension).toLower();
            }
        }
    }
    return extensions;
}

std::span<const ImageFormat> allImageFormats() { return everyImageFormat; }
std::span<const InputFormat> allInputFormats() { return everyInputFormat; }

std::span<const ImageFormat> supportedOutputFormats(InputFormat input) {
    const auto* found = std::ranges::find(offers, input, &Offer::input);
    return found == offers.end() ? allImageFormats() : std::span(found->outputs).first(found->count);
}

bool isCompressible(ImageFormat format) { return row(format).compressible; }
bool isCompressible(InputFormat format) { return row(format).compressible; }
bool isMetadataCapable(InputFormat format) { return row(format).metadataCapable; }
ImageFormat compressedOutputFormat(InputFormat input) { return row(input).compressedTo; }

}  // namespace sorvik
