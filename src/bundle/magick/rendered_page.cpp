#include "bundle/magick/rendered_page.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <vector>

namespace sorvik::bundle {

namespace {

constexpr std::string_view signature = "\x89PNG\r\n\x1A\n";
constexpr std::string_view ending{"\0\0\0\0IEND\xAE\x42\x60\x82", 12};
constexpr std::string_view eightBitRgba{"\x08\x06\0\0\0", 5};
constexpr std::size_t headLength = 33;  // signature and IHDR
constexpr std::size_t widthOffset = 16;
constexpr std::size_t layoutOffset = 24;

std::uint32_t bigEndian(const char* bytes) {
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < sizeof value; ++index) {
        value = value << 8U | static_cast<unsigned char>(bytes[index]);
    }
    return value;
}

constexpr std::size_t channels = 4;

/// Whether a row, its filter's number in front, has a pixel that is not fully transparent. As long as there was none,
/// every filter predicts zero for the last channel, so that it lies here as it is.
bool hasPaint(const std::vector<Bytef>& row) {
    for (std::size_t index = channels; index < row.size(); index += channels) {
        if (row[index] != 0) {
            return true;
        }
    }
    return false;
}

/// Inflates what it is fed, one row after the other, until one has paint.
class Samples {
public:
    explicit Samples(std::size_t rowLength) : row_(rowLength + 1) {
        inflateInit(&stream_);
        startRow();
    }
    ~Samples() { inflateEnd(&stream_); }
    Samples(const Samples&) = delete;
    Samples& operator=(const Samples&) = delete;

    [[nodiscard]] bool painted() const { return painted_; }

    void feed(std::vector<char>& bytes) {
        stream_.next_in = reinterpret_cast<Bytef*>(bytes.data());
        stream_.avail_in = static_cast<uInt>(bytes.size());
        while (!painted_ && inflate(&stream_, Z_NO_FLUSH) == Z_OK) {
            if (stream_.avail_out == 0) {
                painted_ = hasPaint(row_);
                startRow();
            } else if (stream_.avail_in == 0) {
                return;
            }
        }
    }

private:
    void startRow() {
        stream_.next_out = row_.data();
        stream_.avail_out = static_cast<uInt>(row_.size());
    }

    z_stream stream_{};
    std::vector<Bytef> row_;
    bool painted_ = false;
};

bool endsWell(std::ifstream& file) {
    std::string tail(ending.size(), '\0');
    file.seekg(-static_cast<std::streamoff>(ending.size()), std::ios::end);
    return file.read(tail.data(), static_cast<std::streamsize>(tail.size())) && tail == ending;
}

bool holdsPaint(std::ifstream& file, std::uint32_t width) {
    constexpr std::uint32_t partLength = 65536;
    Samples samples(std::size_t{width} * channels);
    std::array<char, 8> chunk{};
    file.seekg(static_cast<std::streamoff>(headLength));
    while (!samples.painted() && file.read(chunk.data(), chunk.size())) {
        std::uint32_t left = bigEndian(chunk.data());
        const bool pixels = std::string_view(chunk.data() + 4, 4) == "IDAT";
        while (pixels && left > 0 && !samples.painted()) {
            std::vector<char> part(std::min(left, partLength));
            if (!file.read(part.data(), static_cast<std::streamsize>(part.size()))) {
                return false;
            }
            samples.feed(part);
            left -= static_cast<std::uint32_t>(part.size());
        }
        file.seekg(static_cast<std::streamoff>(left) + 4, std::ios::cur);  // the rest and the checksum
    }
    return samples.painted();
}

}  // namespace

Page lookAtPage(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string head(headLength, '\0');
    if (!file || file.peek() == std::ifstream::traits_type::eof()) {
        return Page::missing;
    }
    const bool read = !!file.read(head.data(), static_cast<std::streamsize>(head.size()));
    if (!read || !head.starts_with(signature) || head.substr(layoutOffset, eightBitRgba.size()) != eightBitRgba ||
        !endsWell(file)) {
        return Page::cut;
    }
    return holdsPaint(file, bigEndian(head.data() + widthOffset)) ? Page::painted : Page::blank;
}

}  // namespace sorvik::bundle
