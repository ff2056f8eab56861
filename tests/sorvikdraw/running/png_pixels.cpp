#include "png_pixels.h"

#include <png.h>

#include <algorithm>

namespace sorvik::draw::test {

namespace {

/// The simplified reader of libpng, freed however reading ends.
class Reader {
public:
    explicit Reader(const std::filesystem::path& file) {
        image_.version = PNG_IMAGE_VERSION;
        open_ = png_image_begin_read_from_file(&image_, file.c_str()) != 0;
        image_.format = PNG_FORMAT_RGBA;
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { png_image_free(&image_); }

    [[nodiscard]] std::optional<Pixels> size() const {
        return open_ ? std::optional(Pixels{image_.width, image_.height, {}}) : std::nullopt;
    }

    std::optional<Pixels> pixels() {
        std::optional<Pixels> pixels = size();
        if (pixels) {
            pixels->bytes.resize(PNG_IMAGE_SIZE(image_));
            if (png_image_finish_read(&image_, nullptr, pixels->bytes.data(), 0, nullptr) == 0) {
                pixels.reset();
            }
        }
        return pixels;
    }

private:
    png_image image_{};
    bool open_ = false;
};

}  // namespace

Pixel Pixels::at(std::uint32_t x, std::uint32_t y) const {
    Pixel pixel{};
    const auto from = bytes.begin() + (static_cast<std::ptrdiff_t>(y) * width + x) * 4;
    std::copy_n(from, pixel.size(), pixel.begin());
    return pixel;
}

std::optional<Pixels> readPng(const std::filesystem::path& file) { return Reader(file).pixels(); }

std::optional<Pixels> readPngSize(const std::filesystem::path& file) { return Reader(file).size(); }

}  // namespace sorvik::draw::test
