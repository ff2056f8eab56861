#include "imaging/sips/picture_facts.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "codecs/png_chunks.h"
#include "imaging/sips/byte_reader.h"
#include "imaging/sips/completeness.h"
#include "imaging/sips/content_kind.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/frame_lists.h"
#include "imaging/sips/jpeg_decoder.h"
#include "imaging/sips/limits.h"
#include "imaging/sips/upright.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;

PictureFacts jpegFacts(Bytes bytes) {
    const JpegDecoder decoder(bytes);
    PictureFacts facts{"jpeg", decoder.layout().width, decoder.layout().height};
    facts.orientation = orientationOf(decoder.metadata().exif);
    facts.whole = jpegMarkersReachEnd(bytes);
    return facts;
}

/// Checksums tell damage; nothing is inflated.
PictureFacts pngFacts(Bytes bytes) {
    PictureFacts facts{"png"};
    facts.whole = false;
    bool pixels = false;
    std::size_t at = codecs::pngSignature.size();
    while (const auto chunk = codecs::readChunk(bytes, at)) {
        if (chunk->type == codecs::chunkType("IHDR") && chunk->data.size() >= 8) {
            const ByteReader reader(chunk->data, std::endian::big);
            facts.width = reader.u32(0);
            facts.height = reader.u32(4);
        } else if (chunk->type == codecs::chunkType("eXIf")) {
            facts.orientation = orientationOf(chunk->data);
        } else if (chunk->type == codecs::chunkType("acTL")) {
            facts.pages = std::max<std::uint64_t>(1, ByteReader(chunk->data, std::endian::big).u32(0));
        } else if (chunk->type == codecs::chunkType("IDAT")) {
            pixels = true;
        } else if (chunk->type == codecs::chunkType("IEND")) {
            facts.whole = pixels;
            break;
        }
        at = chunk->end;
    }
    return facts;
}

PictureFacts listedFacts(std::string_view kind, const FrameList& list) {
    return {kind, list.width, list.height, list.frames, list.orientation, false, false, list.whole};
}

PictureFacts factsOf(Bytes bytes) {
    switch (contentKindOf(bytes)) {
        case ContentKind::jpeg:
            return jpegFacts(bytes);
        case ContentKind::png:
            return pngFacts(bytes);
        case ContentKind::gif:
            return listedFacts("gif", gifFrames(bytes));
        case ContentKind::webp:
            return listedFacts("webp", webpFrames(bytes));
        case ContentKind::tiff:
            return listedFacts("tiff", tiffPages(bytes));
        default:
            throw Failure(Status::failed, "not a kind of picture that can be described");
    }
}

}  // namespace

PictureFacts plainFacts(const InputFile& input) {
    const PictureFacts facts = factsOf(input.bytes());
    if (facts.width == 0 || facts.height == 0 || facts.pages == 0) {
        throw Failure(Status::failed, "damaged picture");
    }
    return facts;
}

void announce(const PictureFacts& facts) {
    const std::string line = "kind=" + std::string(facts.kind) + " width=" + std::to_string(facts.width) +
                             " height=" + std::to_string(facts.height) + " pages=" + std::to_string(facts.pages) +
                             " orientation=" + std::to_string(facts.orientation) +
                             " alpha=" + (facts.alpha ? "yes" : "no") + " extras=" + (facts.extras ? "yes" : "no") +
                             " whole=" + (facts.whole ? "yes" : "no") + "\n";
    if (::write(STDOUT_FILENO, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        throw failureOf(errno, "standard output");
    }
}

}  // namespace sorvik::sips
