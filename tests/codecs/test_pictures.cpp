#include "test_pictures.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <random>

namespace sorvik::codecs::testing {

TestPicture makePicture(std::uint32_t width, std::uint32_t height, int channels, int bitsPerSample) {
    TestPicture picture{{width, height, channels, bitsPerSample}, {}};
    picture.pixels.reserve(picture.layout.rowBytes() * height);
    std::minstd_rand random(width * 31 + height);
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            for (std::uint32_t c = 0; c < static_cast<std::uint32_t>(channels); ++c) {
                const auto value = static_cast<std::uint32_t>((x * (c + 3) + y * 5) * 97 + random() % 1500);
                picture.pixels.push_back(static_cast<std::byte>(value >> 8));
                if (bitsPerSample == 16) {
                    picture.pixels.push_back(static_cast<std::byte>(value));
                }
            }
        }
    }
    return picture;
}

TestPicture makeFewColours(std::uint32_t width, std::uint32_t height, int channels, unsigned colours) {
    TestPicture picture{{width, height, channels, 8}, {}};
    std::minstd_rand random(colours);
    for (std::uint32_t i = 0; i < width * height; ++i) {
        const auto colour = i < colours ? i : static_cast<unsigned>(random() % colours);
        for (unsigned c = 0; c < static_cast<unsigned>(channels); ++c) {
            picture.pixels.push_back(static_cast<std::byte>(colour * (2 * c + 1) + colour / 256 * c));
        }
    }
    return picture;
}

Bytes bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

PictureMetadata makeMetadata(std::string_view colourSpace) {
    PictureMetadata metadata;
    constexpr std::size_t profileSize = 70'000;
    metadata.icc.resize(profileSize);
    const auto place = [&](std::size_t offset, std::string_view text) {
        std::memcpy(metadata.icc.data() + offset, text.data(), text.size());
    };
    place(0, std::string_view("\0\x01\x11\x70", 4));  // 70,000
    place(8, "\x02");
    place(12, "mntr");
    place(16, colourSpace);
    place(20, "XYZ ");
    place(36, "acsp");
    place(68, std::string_view("\0\0\xf6\xd6\0\x01\0\0\0\0\xd3\x2d", 12));  // the illuminant D50
    std::minstd_rand random(1);
    std::generate(metadata.icc.begin() + 132, metadata.icc.end(),
                  [&] { return static_cast<std::byte>(random() >> 7); });
    metadata.exif = bytesOf(std::string_view("II*\0\x08\0\0\0\0\0\0\0\0\0", 14));
    metadata.xmp = bytesOf("<x:xmpmeta xmlns:x='adobe:ns:meta/'>\xC3\xA9</x:xmpmeta>");
    metadata.iptc = bytesOf(
        std::string_view("\x1c\x02\x05\0\x2dThe title of a picture that fills two lines..\x1c\x02\x19\0\3key", 58));
    metadata.dotsPerInchX = 300;
    metadata.dotsPerInchY = 72;
    return metadata;
}

void writePicture(RowWriter& writer, const TestPicture& picture) {
    constexpr std::uint32_t rowsAtOnce = 7;
    const std::size_t stride = picture.layout.rowBytes();
    for (std::uint32_t y = 0; y < picture.layout.height; y += rowsAtOnce) {
        writer.writeRows(picture.pixels.data() + y * stride, stride, std::min(rowsAtOnce, picture.layout.height - y));
    }
    writer.finish();
}

Bytes encode(const TestPicture& picture, const MakeWriter& makeWriter) {
    BufferSink sink;
    const auto writer = makeWriter(sink);
    writePicture(*writer, picture);
    return sink.bytes();
}

TemporaryFile::TemporaryFile() : path_("/tmp/sorvik-codecs-XXXXXX"), descriptor_(::mkstemp(path_.data())) {}

TemporaryFile::TemporaryFile(const Bytes& contents) : TemporaryFile() {
    FileSink sink(descriptor_);
    sink.write(contents);
    sink.flush();
}

TemporaryFile::~TemporaryFile() {
    ::close(descriptor_);
    ::unlink(path_.c_str());
}

Bytes outputOf(const std::string& command) {
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    Bytes output;
    std::array<std::byte, 65536> part{};
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe)) {
        output.insert(output.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count));
    }
    return ::pclose(pipe) == 0 ? output : Bytes();
}

}  // namespace sorvik::codecs::testing
