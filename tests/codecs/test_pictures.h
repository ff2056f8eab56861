#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "codecs/byte_sink.h"
#include "codecs/picture.h"

namespace sorvik::codecs::testing {

using Bytes = std::vector<std::byte>;

struct TestPicture {
    PixelLayout layout;
    Bytes pixels;  ///< rows without gaps
};

/// Soft slopes with some noise, as photographs have, in every channel.
[[nodiscard]] TestPicture makePicture(std::uint32_t width, std::uint32_t height, int channels, int bitsPerSample);

/// Exactly so many colours, in noise.
[[nodiscard]] TestPicture makeFewColours(std::uint32_t width, std::uint32_t height, int channels, unsigned colours);

/// Every part filled; the profile has a header that readers accept, of the colour space "RGB " or "GRAY".
[[nodiscard]] PictureMetadata makeMetadata(std::string_view colourSpace);

[[nodiscard]] Bytes bytesOf(std::string_view text);

/// Hands all rows to the writer, a few at a time, and finishes.
void writePicture(RowWriter& writer, const TestPicture& picture);

using MakeWriter = std::function<std::unique_ptr<RowWriter>(ByteSink&)>;
[[nodiscard]] Bytes encode(const TestPicture& picture, const MakeWriter& makeWriter);

/// A file in the temporary folder that goes with this object.
class TemporaryFile {
public:
    TemporaryFile();
    explicit TemporaryFile(const Bytes& contents);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] int descriptor() const { return descriptor_; }
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
    int descriptor_;
};

/// What a shell command prints; no bytes when it fails.
[[nodiscard]] Bytes outputOf(const std::string& command);

}  // namespace sorvik::codecs::testing
