#include <libheif/heif.h>

#include <algorithm>
#include <memory>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/look/container_facts.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;
using Context = std::unique_ptr<heif_context, decltype(&heif_context_free)>;
using Handle = std::unique_ptr<heif_image_handle, decltype(&heif_image_handle_release)>;

void require(const heif_error& error) {
    if (error.code != heif_error_Ok) {
        throw Failure(Status::failed, "damaged picture");
    }
}

struct Boxes {
    bool fill = true;    ///< the file: the last one holds the coded pixels
    bool movie = false;  ///< frames in time
};

/// The outermost boxes (ISO/IEC 14496-12, 4.2).
Boxes boxesOf(Bytes bytes) {
    const ByteReader reader(bytes, std::endian::big);
    Boxes boxes;
    std::uint64_t at = 0;
    while (at < bytes.size()) {
        constexpr std::uint64_t header = 8;
        std::uint64_t size = reader.u32(at);
        boxes.movie |= holdsAt(bytes, static_cast<std::size_t>(at) + 4, "moov");
        if (size == 0) {
            return boxes;  // up to the end, wherever that is
        }
        size = size == 1 ? reader.u64(at + header) : size;
        if (size < header || size > bytes.size() - at) {
            boxes.fill = false;
            return boxes;
        }
        at += size;
    }
    return boxes;
}

bool isAvif(Bytes bytes) {
    return holdsAt(bytes, 4, "ftypavif") || holdsAt(bytes, 4, "ftypavis") ||
           (holdsAt(bytes, 4, "ftypm") &&
            heif_has_compatible_brand(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                      static_cast<int>(std::min<std::size_t>(bytes.size(), 4096)), "avif") == 1);
}

}  // namespace

PictureFacts heifFacts(Bytes bytes) {
    const Context context(heif_context_alloc(), &heif_context_free);
    require(heif_context_read_from_memory_without_copy(context.get(), bytes.data(), bytes.size(), nullptr));
    heif_image_handle* found = nullptr;
    require(heif_context_get_primary_image_handle(context.get(), &found));
    const Handle handle(found, &heif_image_handle_release);
    PictureFacts facts{isAvif(bytes) ? "avif" : "heic"};
    facts.width = static_cast<std::uint64_t>(std::max(0, heif_image_handle_get_width(handle.get())));
    facts.height = static_cast<std::uint64_t>(std::max(0, heif_image_handle_get_height(handle.get())));
    facts.pages = static_cast<std::uint64_t>(heif_context_get_number_of_top_level_images(context.get()));
    const Boxes boxes = boxesOf(bytes);
    if (boxes.movie) {
        facts.pages = std::max<std::uint64_t>(facts.pages, 2);  // how many frames there are is not looked up
    }
    facts.alpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
    facts.whole = boxes.fill;
    return facts;
}

}  // namespace sorvik::sips
