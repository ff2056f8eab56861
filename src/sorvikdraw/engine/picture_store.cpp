#include "sorvikdraw/engine/picture_store.h"

#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw {
namespace {

std::int64_t countOf(int width, int height) { return std::int64_t{width} * height; }

// The JPEG file goes into documents that can hold one. `image` outlives them.
void attachFile(cairo_surface_t* surface, const CGImage& image) {
    if (image.bitmap.format == layer_tree::Bitmap::Format::jpeg) {
        const auto& bytes = *image.bitmap.bytes;
        cairo_surface_set_mime_data(surface, CAIRO_MIME_TYPE_JPEG, reinterpret_cast<const unsigned char*>(bytes.data()),
                                    bytes.size(), nullptr, nullptr);
    }
}

}  // namespace

const Pixels* PictureStore::find(const CGImage& image, int columns, int rows) {
    const std::lock_guard lock(mutex_);
    const Entry* entry = &whole(image);
    if (entry->pixels && (columns > 1 || rows > 1)) {
        const Pixels& pixels = *entry->pixels;
        const auto [place, isNew] = entries_.try_emplace({image.bitmap.bytes.get(), columns, rows});
        entry = &place->second;
        if (isNew) {
            place->second.share = budget_.take(countOf(pixels.width / columns + 1, pixels.height / rows + 1));
            place->second.pixels = reduced(pixels, columns, rows);
        }
    }
    return entry->pixels ? &*entry->pixels : nullptr;
}

const PictureStore::Entry& PictureStore::whole(const CGImage& image) {
    const auto [place, isNew] = entries_.try_emplace({image.bitmap.bytes.get(), 1, 1});
    Entry& entry = place->second;
    if (isNew) {
        decodedPixels_ += countOf(image.width, image.height);
        if (decodedPixels_ > limits::embeddedPixels) {
            throw LimitError("the pictures in the drawing are too large");
        }
        entry.share = budget_.take(countOf(image.width, image.height));
        entry.pixels = decodeBitmap(image);
    }
    return entry;
}

PictureSurfaces::Picture PictureSurfaces::find(const CGImage& image, int columns, int rows) {
    const Pixels* pixels = store_.find(image, columns, rows);
    if (pixels == nullptr) {
        return {};
    }
    SurfaceHandle& surface = surfaces_[pixels];
    if (!surface) {
        // Sources are only read.
        auto* data = reinterpret_cast<unsigned char*>(pixels->values.get());
        surface.reset(cairo_image_surface_create_for_data(data,
                                                          pixels->opaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32,
                                                          pixels->width, pixels->height, pixels->width * 4));
        if (columns == 1 && rows == 1) {
            attachFile(surface.get(), image);
        }
    }
    return {surface.get(), pixels->width, pixels->height};
}

}  // namespace sorvik::draw
