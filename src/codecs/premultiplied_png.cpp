#include "codecs/premultiplied_png.h"

#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include "codecs/colour_table.h"
#include "codecs/palette.h"
#include "codecs/png_chunks.h"
#include "codecs/png_metadata.h"
#include "codecs/png_writer.h"
#include "codecs/quick_rows.h"
#include "codecs/samples.h"

namespace sorvik::codecs {
namespace {

constexpr std::size_t pixelBytes = 4;

PixelLayout layoutOf(const PremultipliedPicture& picture, bool opaque) {
    return {.width = picture.width, .height = picture.height, .channels = opaque ? 3 : 4};
}

const std::byte* rowOf(const PremultipliedPicture& picture, std::size_t y) {
    return picture.pixels + y * picture.stride;
}

std::uint32_t pixelOf(const std::byte* row, std::size_t x) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + x * pixelBytes, pixelBytes);
    return pixel;
}

// A run of one colour costs one look-up. False when a colour is one too many for the table.
bool numberRow(ColourTable& table, const std::byte* row, std::size_t pixels, std::uint8_t* numbers) {
    std::uint32_t last = ~pixelOf(row, 0);
    std::uint8_t number = 0;
    for (std::size_t x = 0; x < pixels; ++x) {
        const std::uint32_t pixel = pixelOf(row, x);
        if (pixel != last) {
            const auto found = table.indexOf(pixel);
            if (!found) {
                return false;
            }
            number = *found;
            last = pixel;
        }
        numbers[x] = number;
    }
    return true;
}

std::optional<ColourTable> coloursOf(const PremultipliedPicture& picture) {
    ColourTable table;
    std::vector<std::uint8_t> unused(picture.width);
    for (std::size_t y = 0; y < picture.height; ++y) {
        if (!numberRow(table, rowOf(picture, y), picture.width, unused.data())) {
            return std::nullopt;
        }
    }
    return table;
}

Palette paletteOf(const ColourTable& table) {
    std::vector<PaletteColour> colours(table.colours().size());
    unpremultiply(std::as_bytes(table.colours()).data(), reinterpret_cast<std::byte*>(colours.data()), colours.size());
    return arrangePalette(colours);
}

// The same colours under their numbers in the palette.
ColourTable renumbered(const ColourTable& table, const Palette& palette) {
    std::vector<std::uint32_t> inOrder(table.colours().size());
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
        inOrder[palette.newIndex[i]] = table.colours()[i];
    }
    ColourTable result;
    for (const std::uint32_t colour : inOrder) {
        static_cast<void>(result.indexOf(colour));
    }
    return result;
}

void writeWithPalette(ByteSink& sink, const PremultipliedPicture& picture, const PictureMetadata& metadata,
                      const ColourTable& colours) {
    const PixelLayout layout = layoutOf(picture, true);
    const Palette palette = paletteOf(colours);
    ColourTable numbers = renumbered(colours, palette);
    std::vector<std::uint8_t> row(picture.width);
    std::vector<std::byte> packed(packedSize(picture.width, palette.bitDepth));
    writePngHeader(sink, layout, PngColour::palette, palette.bitDepth);
    writePngMetadata(sink, layout, metadata, true);
    writePngPalette(sink, palette.colours);
    QuickRows rows(sink, QuickContent::indices, packed.size(), 1);
    for (std::size_t y = 0; y < picture.height; ++y) {
        numberRow(numbers, rowOf(picture, y), picture.width, row.data());
        packIndices(row.data(), row.size(), palette.bitDepth, packed.data());
        rows.addRow(packed.data());
    }
    rows.finish();
    writeChunk(sink, chunkType("IEND"), {});
}

void writeInColours(ByteSink& sink, const PremultipliedPicture& picture, const PictureMetadata& metadata) {
    const bool opaque = isOpaque(picture);
    const PixelLayout layout = layoutOf(picture, opaque);
    const auto writer = makePngWriter(sink, layout, metadata, {.purpose = PngPurpose::quick});
    const auto convert = opaque ? takeOpaqueColours : unpremultiply;
    std::vector<std::byte> row(layout.rowBytes());
    for (std::size_t y = 0; y < picture.height; ++y) {
        convert(rowOf(picture, y), row.data(), picture.width);
        writer->writeRows(row.data(), row.size(), 1);
    }
    writer->finish();
}

}  // namespace

void writePremultipliedPng(ByteSink& sink, const PremultipliedPicture& picture, const PictureMetadata& metadata) {
    requireValid(layoutOf(picture, false));
    if (const auto colours = coloursOf(picture)) {
        writeWithPalette(sink, picture, metadata, *colours);
    } else {
        writeInColours(sink, picture, metadata);
    }
}

}  // namespace sorvik::codecs
