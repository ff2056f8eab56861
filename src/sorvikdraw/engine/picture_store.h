#pragma once

#include <map>
#include <mutex>
#include <tuple>
#include <vector>

#include "sorvikdraw/engine/bitmap_decoder.h"
#include "sorvikdraw/engine/cairo_objects.h"
#include "sorvikdraw/engine/drawing_budget.h"

namespace sorvik::draw {

/// The decoded pictures of one drawing, each made once for all threads when it is first drawn.
class PictureStore {
public:
    /// `budget` must outlive the store.
    explicit PictureStore(PixelBudget& budget) : budget_(budget) {}

    /// The picture, made smaller by whole factors. Null for one that can't be decoded. The pixels live as long as the
    /// store. Throws LimitError.
    [[nodiscard]] const Pixels* find(const CGImage& image, int columns, int rows);

private:
    struct Entry {
        std::optional<Pixels> pixels;
        PixelBudget::Share share;
    };
    using Key = std::tuple<const std::vector<std::byte>*, int, int>;

    const Entry& whole(const CGImage& image);

    PixelBudget& budget_;
    std::mutex mutex_;
    std::map<Key, Entry> entries_;
    std::int64_t decodedPixels_ = 0;
};

/// The pictures of a store as one thread's sources; they must not be shared with another.
class PictureSurfaces {
public:
    explicit PictureSurfaces(PictureStore& store) : store_(store) {}

    struct Picture {
        cairo_surface_t* surface = nullptr;  ///< null for a picture that can't be decoded
        int width = 0, height = 0;           ///< pixels
    };
    /// The encoded bytes stay with a picture of full size, for surfaces that can hold them as they are.
    [[nodiscard]] Picture find(const CGImage& image, int columns, int rows);

private:
    PictureStore& store_;
    std::map<const Pixels*, SurfaceHandle> surfaces_;
};

}  // namespace sorvik::draw
