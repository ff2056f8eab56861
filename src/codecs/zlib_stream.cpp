#include "codecs/zlib_stream.h"

#include <isa-l/igzip_lib.h>
#include <libdeflate.h>

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace sorvik::codecs {
namespace {

struct StreamLevel {
    std::uint32_t level;
    std::uint32_t bufferSize;
};

constexpr StreamLevel levelOf(StreamEffort effort) {
    return effort == StreamEffort::quick ? StreamLevel{1, ISAL_DEF_LVL1_DEFAULT}
                                         : StreamLevel{3, ISAL_DEF_LVL3_DEFAULT};
}

constexpr std::uint32_t outputPiece = 256 * 1024;
constexpr std::size_t inputPiece = 1U << 30;  // the library counts in 32 bits

using Compressor = std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)>;
using Decompressor = std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>;

}  // namespace

ByteBlock zlibCompress(std::span<const std::byte> bytes, int level) {
    const Compressor compressor(libdeflate_alloc_compressor(level), &libdeflate_free_compressor);
    if (!compressor) {
        throw std::bad_alloc();
    }
    ByteBlock stream(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    stream.setSize(
        libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), stream.data(), stream.capacity()));
    return stream;
}

std::optional<std::vector<std::byte>> zlibDecompress(std::span<const std::byte> stream, std::size_t sizeLimit) {
    const Decompressor decompressor(libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
    std::vector<std::byte> bytes(sizeLimit);
    std::size_t size = 0;
    if (!decompressor || libdeflate_zlib_decompress(decompressor.get(), stream.data(), stream.size(), bytes.data(),
                                                    bytes.size(), &size) != LIBDEFLATE_SUCCESS) {
        return std::nullopt;
    }
    bytes.resize(size);
    return bytes;
}

// Nothing of it is cleared: a short stream touches a small part of it, and memory fresh from the system costs more
// time than a small picture takes.
struct ZlibStreamer::State {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): isal_deflate_init sets what is read
    State(ByteOutput sink, std::size_t levelBufferSize) : output(std::move(sink)), levelBuffer(levelBufferSize) {
        isal_deflate_init(&stream);
    }

    ByteOutput output;
    isal_zstream stream;
    ByteBlock levelBuffer;
    ByteBlock piece{outputPiece};
};

ZlibStreamer::ZlibStreamer(ByteOutput output, StreamEffort effort)
    : state_(std::make_unique<State>(std::move(output), levelOf(effort).bufferSize)) {
    auto& stream = state_->stream;
    stream.level = levelOf(effort).level;
    stream.level_buf = reinterpret_cast<std::uint8_t*>(state_->levelBuffer.data());
    stream.level_buf_size = levelOf(effort).bufferSize;
    stream.gzip_flag = IGZIP_ZLIB;
    stream.next_out = reinterpret_cast<std::uint8_t*>(state_->piece.data());
    stream.avail_out = outputPiece;
}

ZlibStreamer::~ZlibStreamer() = default;
ZlibStreamer::ZlibStreamer(ZlibStreamer&&) noexcept = default;
ZlibStreamer& ZlibStreamer::operator=(ZlibStreamer&&) noexcept = default;

void ZlibStreamer::write(std::span<const std::byte> bytes) {
    auto& stream = state_->stream;
    while (!bytes.empty()) {
        const auto now = bytes.first(std::min(bytes.size(), inputPiece));
        // The library reads through this pointer only; its C interface does not say const.
        stream.next_in = reinterpret_cast<std::uint8_t*>(const_cast<std::byte*>(now.data()));
        stream.avail_in = static_cast<std::uint32_t>(now.size());
        while (stream.avail_in > 0) {
            deflate();
        }
        bytes = bytes.subspan(now.size());
    }
}

void ZlibStreamer::finish() {
    state_->stream.end_of_stream = 1;
    do {
        deflate();
    } while (state_->stream.internal_state.state != ZSTATE_END);
    handOn();
}

void ZlibStreamer::deflate() {
    if (state_->stream.avail_out == 0) {
        handOn();
    }
    if (isal_deflate(&state_->stream) != COMP_OK) {
        throw std::logic_error("the compressor was set up wrongly");
    }
}

void ZlibStreamer::handOn() {
    auto& stream = state_->stream;
    state_->piece.setSize(outputPiece - stream.avail_out);
    stream.next_out = reinterpret_cast<std::uint8_t*>(state_->piece.data());
    stream.avail_out = outputPiece;
    state_->output(state_->piece.bytes());
}

}  // namespace sorvik::codecs
