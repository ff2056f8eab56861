#include "imaging/sips/full/vips_loader.h"

#include <algorithm>
#include <array>
#include <memory>

#include "codecs/intermediate_png.h"
#include "imaging/sips/byte_reader.h"
#include "imaging/sips/completeness.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/full/intermediate_image.h"
#include "imaging/sips/full/vips_library.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/svg_units.h"

namespace sorvik::sips {

namespace {

using vips::VImage;
using vips::VOption;

using Load = VImage (*)(VipsBlob*, VOption*);

struct LoaderRow {
    ContentKind kind;
    Load load;
    const char* module;  ///< of libvips, null for what is built in
    bool whole;          ///< decodes all pixels at once
};

constexpr std::array loaders = {
    LoaderRow{ContentKind::jpeg, &VImage::jpegload_buffer, nullptr, false},
    LoaderRow{ContentKind::png, &VImage::pngload_buffer, nullptr, false},
    LoaderRow{ContentKind::gif, &VImage::gifload_buffer, nullptr, true},
    LoaderRow{ContentKind::webp, &VImage::webpload_buffer, nullptr, true},
    LoaderRow{ContentKind::tiff, &VImage::tiffload_buffer, nullptr, false},
    LoaderRow{ContentKind::bmp, &VImage::magickload_buffer, "magick", true},
    LoaderRow{ContentKind::psd, &VImage::magickload_buffer, "magick", true},
    LoaderRow{ContentKind::ico, &VImage::magickload_buffer, "magick", true},
    LoaderRow{ContentKind::heif, &VImage::heifload_buffer, "heif", true},
    LoaderRow{ContentKind::svg, &VImage::svgload_buffer, nullptr, true},
    LoaderRow{ContentKind::svgz, &VImage::svgload_buffer, nullptr, true},
    LoaderRow{ContentKind::pdf, &VImage::pdfload_buffer, "poppler", true},
};

const LoaderRow* loaderOf(ContentKind kind) {
    const auto row = std::ranges::find(loaders, kind, &LoaderRow::kind);
    return row == loaders.end() ? nullptr : &*row;
}

VOption* optionsFor(ContentKind kind, std::span<const std::byte> bytes) {
    // libvips scales a drawing in pixels as if a pixel were a point: that is right for lengths alone.
    constexpr double lengthDotsPerInch = 96;
    constexpr double pixelDotsPerInch = 72;
    constexpr double pdfDotsPerInch = 300;
    VOption* options = VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", VIPS_FAIL_ON_TRUNCATED);
    switch (kind) {
        case ContentKind::svg:
        case ContentKind::svgz:
            return options->set("dpi", hasAbsoluteUnits(bytes) ? lengthDotsPerInch : pixelDotsPerInch);
        case ContentKind::pdf:
            return options->set("dpi", pdfDotsPerInch)->set("page", 0);
        default:
            return options;
    }
}

/// Runs `loader` on bytes that outlive the image.
VImage loadBytes(const LoaderRow& loader, std::span<const std::byte> bytes, VOption* options) {
    VipsBlob* blob = vips_blob_new(nullptr, bytes.data(), bytes.size());
    const std::unique_ptr<VipsArea, void (*)(VipsArea*)> release(VIPS_AREA(blob), vips_area_unref);
    return loader.load(blob, options);
}

/// One picture of an icon file.
struct IconEntry {
    int index = 0;
    std::uint64_t area = 0;
    std::uint64_t depth = 0;
    std::span<const std::byte> bytes;
};

/// The largest picture, the deepest of that size.
IconEntry largestIcon(std::span<const std::byte> file) {
    constexpr std::uint64_t directorySize = 6;
    constexpr std::uint64_t entrySize = 16;
    const ByteReader reader(file, std::endian::little);
    IconEntry best;
    for (int i = 0; i < reader.u16(4); ++i) {
        const std::uint64_t at = directorySize + static_cast<std::uint64_t>(i) * entrySize;
        const auto side = [&](std::uint64_t place) {
            const std::uint64_t stored = reader.unsignedAt(place, 1);
            return stored == 0 ? 256 : stored;
        };
        const std::uint64_t size = reader.u32(at + 8);
        const std::uint64_t place = reader.u32(at + 12);
        if (size == 0 || place > file.size() || file.size() - place < size) {
            throw Failure(Status::failed, "truncated picture");
        }
        const IconEntry entry{i, side(at) * side(at + 1), reader.u16(at + 6),
                              file.subspan(static_cast<std::size_t>(place), static_cast<std::size_t>(size))};
        if (entry.area > best.area || (entry.area == best.area && entry.depth > best.depth)) {
            best = entry;
        }
    }
    return best;
}

void requireClaimDecodable(ContentKind kind, std::span<const std::byte> bytes) {
    if (const auto size = claimedSize(kind, bytes)) {
        requireDecodable(*size, loadsWhole(kind) ? Decoding::whole : Decoding::streamed);
    }
}

VImage loadIcon(const LoaderRow& loader, std::span<const std::byte> file) {
    const IconEntry icon = largestIcon(file);
    if (contentKindOf(icon.bytes) == ContentKind::png) {
        requireClaimDecodable(ContentKind::png, icon.bytes);
        return loadBytes(*loaderOf(ContentKind::png), icon.bytes, optionsFor(ContentKind::png, icon.bytes));
    }
    return loadBytes(loader, file, optionsFor(ContentKind::ico, file)->set("page", icon.index));
}

/// libvips takes their black from the wrong place.
bool isCmykPsd(std::span<const std::byte> bytes) {
    constexpr std::uint16_t cmyk = 4;
    return ByteReader(bytes, std::endian::big).u16(24) == cmyk;
}

}  // namespace

bool loadsWhole(ContentKind kind) {
    const LoaderRow* loader = loaderOf(kind);
    return loader != nullptr && loader->whole;
}

LoadedPicture loadPicture(ContentKind kind, const InputFile& input) {
    if (kind == ContentKind::cameraRaw) {
        throw Failure(Status::failed, "camera raw files can't be read");
    }
    const LoaderRow* loader = loaderOf(kind);
    if (loader == nullptr) {
        throw Failure(Status::failed, "not a picture that can be read");
    }
    if (kind == ContentKind::png) {
        if (std::shared_ptr<codecs::IntermediatePng> png = codecs::IntermediatePng::open(input.descriptor())) {
            return {imageOf(png), png->metadata()};
        }
    }
    if (kind == ContentKind::psd && isCmykPsd(input.bytes())) {
        throw Failure(Status::failed, "Photoshop files in CMYK can't be read");
    }
    requireClaimDecodable(kind, input.bytes());
    if (isCutOff(kind, input.bytes())) {
        throw Failure(Status::failed, "truncated picture");
    }
    if (loader->module != nullptr) {
        loadVipsModule(loader->module);
    }
    if (kind == ContentKind::ico) {
        return {loadIcon(*loader, input.bytes()), {}};
    }
    return {loadBytes(*loader, input.bytes(), optionsFor(kind, input.bytes())), {}};
}

}  // namespace sorvik::sips
