#include "imaging/sips/full/webp_metadata.h"

#include <webp/mux.h>

#include <memory>
#include <new>

#include "imaging/sips/failure.h"
#include "imaging/sips/upright.h"

namespace sorvik::sips {

namespace {

using Mux = std::unique_ptr<WebPMux, decltype(&WebPMuxDelete)>;

void check(WebPMuxError error) {
    if (error == WEBP_MUX_MEMORY_ERROR) {
        throw std::bad_alloc();
    }
    if (error != WEBP_MUX_OK) {
        throw Failure(Status::failed, "damaged picture");
    }
}

std::span<const std::byte> chunkOf(const Mux& mux, const char* name) {
    WebPData data{};
    if (WebPMuxGetChunk(mux.get(), name, &data) != WEBP_MUX_OK) {
        return {};
    }
    return std::as_bytes(std::span(data.bytes, data.size));
}

void setChunk(const Mux& mux, const char* name, const std::vector<std::byte>& content) {
    const WebPData data{reinterpret_cast<const std::uint8_t*>(content.data()), content.size()};
    constexpr int copyData = 1;
    check(WebPMuxSetChunk(mux.get(), name, &data, copyData));
}

void setWhereMissing(const Mux& mux, const char* name, const std::vector<std::byte>& content) {
    if (!content.empty() && chunkOf(mux, name).empty()) {
        setChunk(mux, name, content);
    }
}

void declareChunkUpright(const Mux& mux) {
    const auto chunk = chunkOf(mux, "EXIF");
    codecs::PictureMetadata metadata;
    metadata.exif.assign(chunk.begin(), chunk.end());
    if (const int orientation = orientationOf(metadata.exif); orientation != 1) {
        declareUpright(metadata, 1);
        setChunk(mux, "EXIF", metadata.exif);
    }
}

Mux openMux(std::span<const std::byte> webp) {
    const WebPData input{reinterpret_cast<const std::uint8_t*>(webp.data()), webp.size()};
    constexpr int referToData = 0;
    Mux mux(WebPMuxCreate(&input, referToData), &WebPMuxDelete);
    if (!mux) {
        throw Failure(Status::failed, "damaged picture");
    }
    return mux;
}

void add(const Mux& mux, const codecs::PictureMetadata& metadata) {
    setWhereMissing(mux, "EXIF", metadata.exif);
    setWhereMissing(mux, "XMP ", metadata.xmp);
    setWhereMissing(mux, "ICCP", metadata.icc);
}

std::vector<std::byte> assembled(const Mux& mux) {
    WebPData output{};
    check(WebPMuxAssemble(mux.get(), &output));
    const std::unique_ptr<WebPData, decltype(&WebPDataClear)> owned(&output, &WebPDataClear);
    const auto bytes = std::as_bytes(std::span(output.bytes, output.size));
    return {bytes.begin(), bytes.end()};
}

}  // namespace

std::vector<std::byte> webpWithMetadata(std::span<const std::byte> webp, const codecs::PictureMetadata& metadata) {
    const Mux mux = openMux(webp);
    add(mux, metadata);
    declareChunkUpright(mux);
    return assembled(mux);
}

std::vector<std::byte> webpWithAdded(std::span<const std::byte> webp, const codecs::PictureMetadata& metadata) {
    const Mux mux = openMux(webp);
    add(mux, metadata);
    return assembled(mux);
}

}  // namespace sorvik::sips
