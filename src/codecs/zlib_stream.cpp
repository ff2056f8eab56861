#include "codecs/zlib_stream.h"

#include <isa-l/igzip_lib.h>
#include <libdeflate.h>

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace sorvik::codecs {
namespace {

constexpr std::uint32_t streamerLevel = 3;
constexpr std::size_t outputPiece = std::size_t{256} * 1024;
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

struct ZlibStreamer::State {
    explicit State(ByteOutput sink) : output(std::move(sink)) {}

    ByteOutput output;
    isal_zstream stream{};
    std::vector<std::uint8_t> levelBuffer = std::vector<std::uint8_t>(ISAL_DEF_LVL3_DEFAULT);
    std::vector<std::byte> piece = std::vector<std::byte>(outputPiece);
};

ZlibStreamer::ZlibStreamer(ByteOutput output) : state_(std::make_unique<State>(std::move(output))) {
    auto& stream = state_->stream;
    isal_deflate_init(&stream);
    stream.level = streamerLevel;
    stream.level_buf = state_->levelBuffer.data();
    stream.level_buf_size = static_cast<std::uint32_t>(state_->levelBuffer.size());
    stream.gzip_flag = IGZIP_ZLIB;
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
        do {
            deflate();
        } while (stream.avail_in > 0 || stream.avail_out == 0);
        bytes = bytes.subspan(now.size());
    }
}

void ZlibStreamer::finish() {
    state_->stream.end_of_stream = 1;
    do {
        deflate();
    } while (state_->stream.internal_state.state != ZSTATE_END);
}

void ZlibStreamer::deflate() {
    auto& stream = state_->stream;
    stream.next_out = reinterpret_cast<std::uint8_t*>(state_->piece.data());
    stream.avail_out = static_cast<std::uint32_t>(state_->piece.size());
    if (isal_deflate(&stream) != COMP_OK) {
        throw std::logic_error("the compressor was set up wrongly");
    }
    const std::size_t made = state_->piece.size() - stream.avail_out;
    if (made > 0) {
        state_->output(std::span(state_->piece).first(made));
    }
}

}  // namespace sorvik::codecs
