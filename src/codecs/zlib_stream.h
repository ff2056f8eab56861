#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "codecs/byte_block.h"

namespace sorvik::codecs {

/// Takes the parts of a stream in order.
using ByteOutput = std::function<void(std::span<const std::byte>)>;

/// The bytes as one zlib stream (RFC 1950). `level` is libdeflate's, from 0 (stored) to 12.
[[nodiscard]] ByteBlock zlibCompress(std::span<const std::byte> bytes, int level);

/// What a zlib stream holds; absent when it is damaged or holds more than `sizeLimit` bytes.
[[nodiscard]] std::optional<std::vector<std::byte>> zlibDecompress(std::span<const std::byte> stream,
                                                                   std::size_t sizeLimit);

/// How much a stream in the making is worked at. A quick one takes a twentieth of the time and comes out up to a
/// third larger.
enum class StreamEffort { quick, dense };

/// Makes a zlib stream of any length in bounded memory, faster and less dense than zlibCompress.
class ZlibStreamer {
public:
    explicit ZlibStreamer(ByteOutput output, StreamEffort effort = StreamEffort::dense);
    ~ZlibStreamer();
    ZlibStreamer(ZlibStreamer&&) noexcept;
    ZlibStreamer& operator=(ZlibStreamer&&) noexcept;

    void write(std::span<const std::byte> bytes);

    /// Ends the stream. To be called once.
    void finish();

private:
    struct State;
    void deflate();
    void handOn();
    std::unique_ptr<State> state_;
};

}  // namespace sorvik::codecs
