#include "pictures.h"

#include <gtest/gtest.h>
#include <png.h>
#include <turbojpeg.h>

#include <memory>

namespace sorvik::draw::testing {
namespace {

using Bytes = std::vector<std::byte>;

CGTypes::Image imageOf(layer_tree::Bitmap::Format format, Bytes bytes, int width, int height) {
    return CGImage{{format, std::make_shared<const Bytes>(std::move(bytes))}, width, height};
}

void append(png_structp png, png_bytep data, std::size_t size) {
    auto& bytes = *static_cast<Bytes*>(png_get_io_ptr(png));
    const auto* from = reinterpret_cast<const std::byte*>(data);
    bytes.insert(bytes.end(), from, from + size);
}

}  // namespace

CGTypes::Image png(const PngMaking& making) {
    Bytes bytes;
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(writer);
    png_set_write_fn(writer, &bytes, append, nullptr);
    png_set_IHDR(writer, info, static_cast<png_uint_32>(making.width), static_cast<png_uint_32>(making.height),
                 making.bits, PNG_COLOR_TYPE_RGBA, making.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    std::vector<std::uint8_t> samples;
    for (const std::uint8_t sample : making.rgba) {
        samples.insert(samples.end(), static_cast<std::size_t>(making.bits / 8), sample);
    }
    std::vector<png_bytep> rows;
    for (int y = 0; y < making.height; ++y) {
        rows.push_back(samples.data() + y * making.width * making.bits / 2);
    }
    png_set_rows(writer, info, rows.data());
    png_write_png(writer, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&writer, &info);
    return imageOf(layer_tree::Bitmap::Format::png, std::move(bytes), making.width, making.height);
}

CGTypes::Image jpeg(int width, int height, std::uint32_t color) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height), color);
    const std::unique_ptr<void, decltype(&tjDestroy)> encoder(tjInitCompress(), tjDestroy);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    EXPECT_EQ(tjCompress2(encoder.get(), reinterpret_cast<const unsigned char*>(pixels.data()), width, 0, height,
                          TJPF_BGRX, &data, &size, TJSAMP_444, 100, 0),
              0);
    const auto* first = reinterpret_cast<const std::byte*>(data);
    Bytes bytes(first, first + size);
    tjFree(data);
    return imageOf(layer_tree::Bitmap::Format::jpeg, std::move(bytes), width, height);
}

CGTypes::Image truncated(const CGTypes::Image& image, std::size_t bytes) {
    Bytes shorter = *image->bitmap.bytes;
    shorter.resize(shorter.size() - bytes);
    return imageOf(image->bitmap.format, std::move(shorter), image->width, image->height);
}

}  // namespace sorvik::draw::testing
