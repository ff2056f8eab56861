#include "png_reading.h"

#include <png.h>

#include <csetjmp>
#include <cstring>
#include <span>

namespace sorvik::codecs::testing {
namespace {

Bytes copyOf(const void* start, std::size_t size) {
    const auto* bytes = static_cast<const std::byte*>(start);
    return {bytes, bytes + size};
}

void readBytes(png_structp png, png_bytep to, std::size_t count) {
    auto& rest = *static_cast<std::span<const std::byte>*>(png_get_io_ptr(png));
    if (count > rest.size()) {
        png_error(png, "the file ends too early");
    }
    std::memcpy(to, rest.data(), count);
    rest = rest.subspan(count);
}

void keepComplaint(png_structp png, png_const_charp message) {
    auto& complaint = *static_cast<std::string*>(png_get_error_ptr(png));
    if (complaint.empty()) {
        complaint = message;
    }
}

[[noreturn]] void fail(png_structp png, png_const_charp message) {
    keepComplaint(png, message);
    png_longjmp(png, 1);
}

void readTexts(png_structp png, png_infop info, PictureMetadata& metadata) {
    png_textp texts = nullptr;
    const int count = png_get_text(png, info, &texts, nullptr);
    for (int i = 0; i < count; ++i) {
        const std::string_view key = texts[i].key;
        if (key == "XML:com.adobe.xmp") {
            metadata.xmp = copyOf(texts[i].text, texts[i].itxt_length);
        } else if (key == "Raw profile type iptc") {
            metadata.iptc = copyOf(texts[i].text, texts[i].text_length);
        }
    }
}

void readMetadata(png_structp png, png_infop info, PictureMetadata& metadata) {
    png_charp name = nullptr;
    png_bytep bytes = nullptr;
    png_uint_32 size = 0;
    int method = 0;
    if (png_get_iCCP(png, info, &name, &method, &bytes, &size) != 0) {
        metadata.icc = copyOf(bytes, size);
    }
    if (png_get_eXIf_1(png, info, &size, &bytes) != 0) {
        metadata.exif = copyOf(bytes, size);
    }
    metadata.dotsPerInchX = png_get_x_pixels_per_meter(png, info) * 0.0254;
    metadata.dotsPerInchY = png_get_y_pixels_per_meter(png, info) * 0.0254;
    readTexts(png, info, metadata);
}

void readPicture(png_structp png, png_infop info, DecodedPng& decoded) {
    png_read_info(png, info);
    readMetadata(png, info, decoded.metadata);
    decoded.palette = png_get_color_type(png, info) == PNG_COLOR_TYPE_PALETTE;
    decoded.bitDepth = png_get_bit_depth(png, info);
    png_set_expand(png);
    if (decoded.bitDepth == 16) {
        png_set_swap(png);
    }
    png_read_update_info(png, info);
    auto& [layout, pixels] = decoded.picture;
    layout = {png_get_image_width(png, info), png_get_image_height(png, info), png_get_channels(png, info),
              png_get_bit_depth(png, info)};
    pixels.resize(layout.rowBytes() * layout.height);
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        png_read_row(png, reinterpret_cast<png_bytep>(pixels.data() + y * layout.rowBytes()), nullptr);
    }
    png_read_end(png, info);
}

}  // namespace

DecodedPng decodePng(const Bytes& file) {
    DecodedPng decoded;
    std::span<const std::byte> rest(file);
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &decoded.complaint, fail, keepComplaint);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &rest, readBytes);
    if (setjmp(png_jmpbuf(png)) == 0) {
        readPicture(png, info, decoded);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return decoded;
}

}  // namespace sorvik::codecs::testing
