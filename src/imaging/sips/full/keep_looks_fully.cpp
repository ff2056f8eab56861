#include "imaging/sips/full/keep_looks_fully.h"

#include "imaging/sips/files.h"
#include "imaging/sips/full/avif_metadata.h"
#include "imaging/sips/full/heif_handles.h"
#include "imaging/sips/full/webp_metadata.h"
#include "imaging/sips/looks.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;

Looks heifLooks(Bytes bytes) {
    const HeifContext context(heif_context_alloc());
    heif_image_handle* found = nullptr;
    heif_error error = heif_context_read_from_memory_without_copy(context.get(), bytes.data(), bytes.size(), nullptr);
    if (error.code == heif_error_Ok) {
        error = heif_context_get_primary_image_handle(context.get(), &found);
    }
    const HeifHandle handle(found);
    if (error.code != heif_error_Ok) {
        throw Failure(Status::failed, "damaged picture");
    }
    Looks looks;
    looks.channels = 3;
    looks.oriented = true;
    looks.icc.resize(heif_image_handle_get_raw_color_profile_size(handle.get()));
    if (!looks.icc.empty() && heif_image_handle_get_raw_color_profile(handle.get(), looks.icc.data()).code != 0) {
        looks.icc.clear();
    }
    return looks;
}

std::optional<Looks> anyLooks(ContentKind kind, Bytes bytes) {
    return kind == ContentKind::heif ? heifLooks(bytes) : looksOf(kind, bytes);
}

}  // namespace

Status keepLooksFully(const KeepLooksRequest& request) {
    const InputFile from(request.from);
    const InputFile to(request.to);
    const ContentKind toKind = contentKindOf(to.bytes());
    const auto original = anyLooks(contentKindOf(from.bytes()), from.bytes());
    const auto kept = anyLooks(toKind, to.bytes());
    const Looks lacking = original && kept ? lackingLooks(*original, *kept) : Looks();
    codecs::PictureMetadata added;
    added.icc = lacking.icc;
    if (toKind == ContentKind::webp && lacksAny(lacking)) {
        added.exif = lacking.orientation == 1 ? std::vector<std::byte>() : exifOfOrientation(lacking.orientation);
        replaceWith(request.to, webpWithAdded(to.bytes(), added));
    } else if (toKind == ContentKind::heif && !added.icc.empty()) {
        replaceWith(request.to, avifWithMetadata(to.bytes(), added));
    }
    return Status::finished;
}

}  // namespace sorvik::sips
