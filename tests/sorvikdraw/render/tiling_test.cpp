#include "sorvikdraw/engine/tiling.h"

#include <gtest/gtest.h>

#include <limits>

#include "drawings.h"
#include "sorvikdraw/engine/cairo_objects.h"

namespace sorvik::draw::testing {
namespace {

using layer_tree::Rect;

// Red, green, blue and black stripes from left to right, of 2, 4, 3 and 1 units; 10 by 10 as a whole.
SVG stripes() {
    return SVG({10, 10}, {setFill(red), fill(rectangle(0, 0, 2, 10)), setFill(green), fill(rectangle(2, 0, 4, 10)),
                          setFill(blue), fill(rectangle(6, 0, 3, 10)), setFill(black), fill(rectangle(9, 0, 1, 10))});
}

// The first row of pixels that is painted, a letter a pixel.
std::string rowOf(const CGCommands& commands, int y) {
    const Raster raster = drawn(commands, 40, 30);
    std::string row;
    for (int x = 0; x < raster.width(); ++x) {
        switch (raster.row(y)[x]) {
            case 0:
                row += '.';
                break;
            case redPixel:
                row += 'r';
                break;
            case greenPixel:
                row += 'g';
                break;
            case bluePixel:
                row += 'b';
                break;
            case 0xFF000000:
                row += 'k';
                break;
            default:
                row += '?';
        }
    }
    return row.substr(0, row.find_last_not_of('.') + 1);
}

TEST(Tiling, LaysDrawingsIntoRects) {
    const SVG svg = stripes();
    const Rect in{{5, 10}, {25, 15}};
    EXPECT_EQ(rowOf(placed(svg, std::nullopt), 0), "rrggggbbbk");
    EXPECT_EQ(rowOf(placed(svg, Rect{{5, 10}, {20, 15}}), 15), ".....rrrrggggggggbbbbbbkk");
    EXPECT_EQ(rowOf(placed(svg, in, true), 24), ".....rrggggbbbkrrggggbbbkrrggg");
    EXPECT_EQ(rowOf(placed(svg, in, true), 9), "");
    EXPECT_EQ(rowOf(placed(svg, in, true), 25), "");
    EXPECT_EQ(rowOf(placed(svg, Rect{{0, 0}, {20, 10}}, false), 5), "rrrrggggggggbbbbbbkk");
}

TEST(Tiling, KeepsCapsAtTheirSize) {
    const SVG svg = stripes();
    const SVG::Insets caps{1, 2, 1, 1};
    const Rect in{{2, 0}, {24, 20}};
    for (const int y : {0, 10, 19}) {
        EXPECT_EQ(rowOf(placed(svg, in, caps, false), y), "..rrggggggggggggbbbbbbbbbk") << y;
        EXPECT_EQ(rowOf(placed(svg, in, caps, true), y), "..rrggggbbbggggbbbggggbbbk") << y;
    }
    EXPECT_EQ(rowOf(placed(svg, in, caps, true), 20), "");
    EXPECT_EQ(rowOf(placed(svg, Rect{{0, 0}, {12, 10}}, {0, 6, 0, 4}, true), 5), "rrgggg..bbbk") << "no middle";
    EXPECT_EQ(rowOf(placed(svg, Rect{{0, 0}, {4, 10}}, {0, 4, 0, 4}, false), 5), "rgb?") << "no room";
}

TEST(Tiling, DrawsNothingWithoutExtent) {
    const float none = std::numeric_limits<float>::quiet_NaN();
    for (const Rect in : {Rect{{0, 0}, {0, 10}}, Rect{{0, 0}, {-5, 10}}, Rect{{none, 0}, {none, 10}}}) {
        EXPECT_EQ(rowOf(placed(stripes(), in), 0), "");
        EXPECT_EQ(rowOf(placed(stripes(), in, true), 0), "");
        EXPECT_EQ(rowOf(placed(stripes(), in, {1, 1, 1, 1}, true), 0), "");
    }
    EXPECT_TRUE(placed(SVG({0, 10}, {}), Rect{{0, 0}, {10, 10}}, true).empty());
}

TEST(Tiling, DrawsInTheSpaceOfAContextAndLeavesIt) {
    const SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 40, 40));
    const ContextHandle context(cairo_create(surface.get()));
    cairo_translate(context.get(), 20, 20);
    draw(context.get(), stripes(), Rect{{0, 0}, {5, 5}});
    double x = 0;
    double y = 0;
    cairo_user_to_device(context.get(), &x, &y);
    EXPECT_EQ(x, 20);
    cairo_surface_flush(surface.get());
    const auto* row = cairo_image_surface_get_data(surface.get()) + 22 * cairo_image_surface_get_stride(surface.get());
    const auto* pixels = reinterpret_cast<const std::uint32_t*>(row);
    EXPECT_EQ(pixels[20], redPixel);
    EXPECT_EQ(pixels[22], greenPixel);
    EXPECT_EQ(pixels[19], 0U);
    EXPECT_EQ(pixels[25], 0U);
}

}  // namespace
}  // namespace sorvik::draw::testing
