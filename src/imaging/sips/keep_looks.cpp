#include "imaging/sips/keep_looks.h"

#include <string>
#include <string_view>

#include "imaging/sips/add_looks.h"
#include "imaging/sips/byte_reader.h"
#include "imaging/sips/content_kind.h"
#include "imaging/sips/files.h"
#include "imaging/sips/looks.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;

/// A HEIC or AVIF names its profile in a colour property; without these words it has none.
bool mayHoldProfile(Bytes heif) {
    return textOf(heif).find("colrprof") != std::string_view::npos ||
           textOf(heif).find("colrrICC") != std::string_view::npos;
}

/// ImageMagick 6 gives each frame of a WebP the time of the next one.
void keepFrameTimes(const KeepLooksRequest& request) {
    const InputFile from(request.from);
    const InputFile to(request.to);
    if (contentKindOf(from.bytes()) == ContentKind::webp && contentKindOf(to.bytes()) == ContentKind::webp) {
        if (const auto timed = webpWithTimesOf(to.bytes(), from.bytes()); !timed.empty()) {
            replaceWith(request.to, timed);
        }
    }
}

void keepInTiff(const std::string& path, Bytes tiff, Bytes original) {
    if (const auto grown = tiffWithLooks(tiff, original); !grown.empty()) {
        replaceWith(path, grown);
    }
}

}  // namespace

bool keepLooksDirectly(const KeepLooksRequest& request) {
    keepFrameTimes(request);
    const InputFile from(request.from);
    const InputFile to(request.to);
    const ContentKind fromKind = contentKindOf(from.bytes());
    const ContentKind toKind = contentKindOf(to.bytes());
    if (fromKind == ContentKind::heif && mayHoldProfile(from.bytes())) {
        return false;
    }
    if (fromKind == ContentKind::tiff && toKind == ContentKind::tiff) {
        keepInTiff(request.to, to.bytes(), from.bytes());
        return true;
    }
    const auto original = looksOf(fromKind, from.bytes());
    const auto kept = looksOf(toKind, to.bytes());
    const Looks lacking = original && kept ? lackingLooks(*original, *kept) : Looks();
    if (!lacksAny(lacking)) {
        return true;
    }
    switch (toKind) {
        case ContentKind::jpeg:
            replaceWith(request.to, jpegWithLooks(to.bytes(), lacking));
            return true;
        case ContentKind::png:
            replaceWith(request.to, pngWithLooks(to.bytes(), lacking));
            return true;
        default:
            return toKind != ContentKind::webp;
    }
}

}  // namespace sorvik::sips
