#include "codecs/jpeg_writer.h"

#include <turbojpeg.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>

#include "codecs/byte_block.h"

namespace sorvik::codecs {
namespace {

constexpr int leastQualityOfFullChroma = 90;

constexpr auto destroyCompressor = [](void* compressor) { tjDestroy(compressor); };
using Compressor = std::unique_ptr<void, decltype(destroyCompressor)>;

TJSAMP subsampling(Chroma chroma, int quality) {
    const bool full = chroma == Chroma::full || (chroma == Chroma::byQuality && quality >= leastQualityOfFullChroma);
    return full ? TJSAMP_444 : TJSAMP_420;
}

void requireValid(const OpaquePicture& picture) {
    constexpr std::uint32_t longest = 65'500;
    if (std::clamp(picture.width, 1U, longest) != picture.width ||
        std::clamp(picture.height, 1U, longest) != picture.height) {
        throw JpegError("no JPEG has sides of these lengths");
    }
    if (picture.stride > std::numeric_limits<int>::max()) {
        throw JpegError("the rows lie too far apart");
    }
}

}  // namespace

std::vector<std::byte> encodeJpeg(const OpaquePicture& picture, int quality, Chroma chroma) {
    requireValid(picture);
    quality = std::clamp(quality, 1, 100);
    const Compressor compressor(tjInitCompress());
    if (!compressor) {
        throw std::bad_alloc();
    }
    const int width = static_cast<int>(picture.width);
    const int height = static_cast<int>(picture.height);
    const TJSAMP sampling = subsampling(chroma, quality);
    // Only the pages that the result takes are touched.
    ByteBlock encoded(tjBufSize(width, height, sampling));
    auto* place = reinterpret_cast<unsigned char*>(encoded.data());
    unsigned long size = encoded.capacity();
    if (tjCompress2(compressor.get(), reinterpret_cast<const unsigned char*>(picture.pixels), width,
                    static_cast<int>(picture.stride), height, TJPF_BGRX, &place, &size, sampling, quality,
                    TJFLAG_NOREALLOC | TJFLAG_ACCURATEDCT) != 0) {
        throw JpegError(tjGetErrorStr2(compressor.get()));
    }
    encoded.setSize(size);
    return {encoded.bytes().begin(), encoded.bytes().end()};
}

}  // namespace sorvik::codecs
