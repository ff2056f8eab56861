#include "imaging/sips/png_decoder.h"

#include <png.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <new>
#include <string_view>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/limits.h"

namespace sorvik::sips {

namespace {

// libpng is C, but on the platforms supported its frames carry unwind tables.
[[noreturn]] void throwFailure(png_structp /*png*/, png_const_charp /*message*/) {
    throw Failure(Status::failed, "damaged picture");
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

struct Cursor {
    std::span<const std::byte> rest;

    static void read(png_structp png, png_bytep to, std::size_t size) {
        auto& self = *static_cast<Cursor*>(png_get_io_ptr(png));
        if (self.rest.size() < size) {
            throw Failure(Status::failed, "truncated picture");
        }
        std::memcpy(to, self.rest.data(), size);
        self.rest = self.rest.subspan(size);
    }
};

/// Whether metadata lie where libpng's getters don't show them: hexadecimal in text chunks, or behind
/// the pixels.
bool hidesMetadata(std::span<const std::byte> png) {
    const ByteReader reader(png, std::endian::big);
    bool pixelsSeen = false;
    std::uint64_t at = 8;
    while (at < png.size()) {
        const auto chunk = static_cast<std::size_t>(at);
        pixelsSeen = pixelsSeen || holdsAt(png, chunk + 4, "IDAT");
        const bool text = holdsAt(png, chunk + 4, "tEXt") || holdsAt(png, chunk + 4, "zTXt");
        const bool late = holdsAt(png, chunk + 4, "iTXt") || holdsAt(png, chunk + 4, "eXIf");
        if ((text && holdsAt(png, chunk + 8, "Raw profile")) || (late && pixelsSeen)) {
            return true;
        }
        at += 12 + std::uint64_t{reader.u32(at)};
    }
    return false;
}

void assign(std::vector<std::byte>& target, const void* data, std::size_t size) {
    const auto* bytes = static_cast<const std::byte*>(data);
    target.assign(bytes, bytes + size);
}

codecs::PictureMetadata metadataOf(png_structp png, png_infop info) {
    codecs::PictureMetadata metadata;
    png_charp name = nullptr;
    int method = 0;
    png_bytep profile = nullptr;
    png_uint_32 size = 0;
    if (png_get_iCCP(png, info, &name, &method, &profile, &size) != 0) {
        assign(metadata.icc, profile, size);
    }
    png_bytep exif = nullptr;
    if (png_get_eXIf_1(png, info, &size, &exif) != 0) {
        assign(metadata.exif, exif, size);
    }
    png_textp texts = nullptr;
    int count = 0;
    png_get_text(png, info, &texts, &count);
    for (const png_text& text : std::span(texts, static_cast<std::size_t>(count))) {
        if (std::string_view(text.key) == "XML:com.adobe.xmp") {
            assign(metadata.xmp, text.text, text.compression > 0 ? text.itxt_length : std::strlen(text.text));
        }
    }
    constexpr double metresPerInch = 0.0254;
    const auto dots = [](png_uint_32 perMetre) { return std::round(perMetre * metresPerInch * 100) / 100; };
    metadata.dotsPerInchX = dots(png_get_x_pixels_per_meter(png, info));
    metadata.dotsPerInchY = dots(png_get_y_pixels_per_meter(png, info));
    return metadata;
}

}  // namespace

struct PngDecoder::State {
    explicit State(std::span<const std::byte> file)
        : cursor{file},
          png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, throwFailure, ignoreWarning)),
          info(png != nullptr ? png_create_info_struct(png) : nullptr) {
        if (info == nullptr) {
            png_destroy_read_struct(&png, nullptr, nullptr);
            throw std::bad_alloc();
        }
        png_set_read_fn(png, &cursor, Cursor::read);
        png_set_user_limits(png, maximumSide, maximumSide);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { png_destroy_read_struct(&png, &info, nullptr); }

    Cursor cursor;
    png_structp png;
    png_infop info;
    codecs::PixelLayout layout;
    codecs::PictureMetadata metadata;
    bool plain = false;
};

PngDecoder::PngDecoder(std::span<const std::byte> png) : state_(std::make_unique<State>(png)) {
    png_structp reader = state_->png;
    png_infop info = state_->info;
    png_read_info(reader, info);
    state_->plain = png_get_interlace_type(reader, info) == PNG_INTERLACE_NONE && !hidesMetadata(png);
    state_->metadata = metadataOf(reader, info);
    png_set_expand(reader);
    if (std::endian::native == std::endian::little) {
        png_set_swap(reader);
    }
    png_read_update_info(reader, info);
    state_->layout = {png_get_image_width(reader, info), png_get_image_height(reader, info),
                      png_get_channels(reader, info), png_get_bit_depth(reader, info)};
}

PngDecoder::~PngDecoder() = default;

bool PngDecoder::readable() const { return state_->plain; }

const codecs::PixelLayout& PngDecoder::layout() const { return state_->layout; }

const codecs::PictureMetadata& PngDecoder::metadata() const { return state_->metadata; }

void PngDecoder::pump(codecs::RowWriter& writer) {
    const codecs::PixelLayout& layout = state_->layout;
    requireDecodable({layout.width, layout.height, layout.bytesPerPixel()}, Decoding::streamed);
    std::vector<std::byte> row(layout.rowBytes());
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        png_read_row(state_->png, reinterpret_cast<png_bytep>(row.data()), nullptr);
        writer.writeRows(row.data(), row.size(), 1);
    }
    png_read_end(state_->png, nullptr);
}

}  // namespace sorvik::sips
