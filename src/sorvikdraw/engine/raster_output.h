#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>

#include "sorvikdraw/engine/svg.h"

namespace sorvik::draw {

/// Rows from the top down without gaps; a pixel is 0xAARRGGBB, colours multiplied by alpha.
class Raster {
public:
    /// Transparent. Throws DrawingError.
    Raster(int width, int height);

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] std::size_t stride() const { return static_cast<std::size_t>(width_) * sizeof(std::uint32_t); }
    [[nodiscard]] std::uint32_t* row(int y) { return pixels_.get() + static_cast<std::ptrdiff_t>(y) * width_; }
    [[nodiscard]] const std::uint32_t* row(int y) const {
        return pixels_.get() + static_cast<std::ptrdiff_t>(y) * width_;
    }

private:
    struct Free {
        void operator()(std::uint32_t* pixels) const { std::free(pixels); }
    };

    int width_, height_;
    std::unique_ptr<std::uint32_t[], Free> pixels_;
};

enum class Background : std::uint8_t { transparent, white };

/// In how many bands, each with a thread, a picture is drawn when the caller does not say.
[[nodiscard]] int bandsFor(int width, int height, std::size_t commands);

/// The drawing as pixels, `scale` of them a user unit (0 as 1), parts of one counted as one. The picture is the same
/// for all numbers of bands, but for the last two bits of a few pixels. Throws as SVG::pngData.
[[nodiscard]] Raster rasterize(const SVG& svg, double scale = 0, Background background = Background::transparent,
                               std::optional<int> bands = {});
[[nodiscard]] Raster rasterize(const SVG& svg, SVG::Size size, double scale = 0);

}  // namespace sorvik::draw
