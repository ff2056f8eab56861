// Pictures inside drawings: forged, cut, huge, and none at all.

#include <zlib.h>

#include <vector>

#include "hostile_file.h"
#include "program_run.h"

namespace sorvik::draw::test {
namespace {

using namespace std::string_literals;

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view group = bytes.substr(at, 3);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits = bits << 8U | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            text += i <= group.size() ? digits[bits >> (18U - 6U * i) & 63U] : '=';
        }
    }
    return text;
}

std::string bigEndian(std::uint32_t number) {
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        bytes += static_cast<char>(number >> shift & 255U);
    }
    return bytes;
}

std::string chunk(const std::string& type, const std::string& data) {
    const std::string body = type + data;
    const uLong sum = ::crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
    return bigEndian(static_cast<std::uint32_t>(data.size())) + body + bigEndian(static_cast<std::uint32_t>(sum));
}

/// Packed piece by piece, so that a bomb does not go off here.
std::string deflated(std::string_view pattern, std::size_t times = 1) {
    z_stream stream{};
    ::deflateInit(&stream, Z_BEST_SPEED);
    std::string packed;
    std::string buffer(65'536, '\0');
    for (std::size_t i = 0; i < times; ++i) {
        std::string piece(pattern);
        stream.next_in = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_in = static_cast<uInt>(piece.size());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
            stream.avail_out = static_cast<uInt>(buffer.size());
            ::deflate(&stream, i + 1 == times ? Z_FINISH : Z_NO_FLUSH);
            packed.append(buffer, 0, buffer.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    }
    ::deflateEnd(&stream);
    return packed;
}

/// Red, green, blue and alpha, 8 bits each; `rows` in their packed form.
std::string png(std::uint32_t width, std::uint32_t height, const std::string& rows) {
    return "\x89PNG\r\n\x1A\n" + chunk("IHDR", bigEndian(width) + bigEndian(height) + "\x08\x06\0\0\0"s) +
           chunk("IDAT", rows) + chunk("IEND", "");
}

std::string soundPng(std::uint32_t side) {
    const std::string row = '\0' + std::string(std::size_t{side} * 4, '\x80');
    return png(side, side, deflated(row, side));
}

std::string megabytes(std::size_t count) { return deflated(std::string(1'000'000, 'a'), count); }

std::string jpeg() { return contentsOf(SORVIK_TEST_DATA "/jpeg/hopper_gray.jpg"); }

/// A JPEG whose frame header says another size.
std::string jpegOfSide(std::uint32_t side) {
    std::string bytes = jpeg();
    for (const char* start : {"\xFF\xC0", "\xFF\xC2"}) {
        if (const std::size_t frame = bytes.find(start); frame != std::string::npos) {
            bytes.replace(frame + 5, 4, bigEndian(side << 16U | side));
            break;
        }
    }
    return bytes;
}

std::string image(const std::string& href, std::string_view more = R"(width="80" height="80")") {
    return "<image " + std::string(more) + R"( xlink:href=")" + href + R"("/>)";
}
std::string pngImage(const std::string& bytes, std::string_view more = R"(width="80" height="80")") {
    return image("data:image/png;base64," + base64(bytes), more);
}
std::string jpegImage(const std::string& bytes) { return image("data:image/jpeg;base64," + base64(bytes)); }

template <const auto& href>
std::string referringTo() {
    return document(image(href));
}
constexpr char nothing[] = "";
constexpr char localFile[] = "file:///etc/passwd";
constexpr char device[] = "/dev/zero";
constexpr char network[] = "http://localhost:1/a.png";
constexpr char unknownType[] = "data:image/gif;base64,R0lGODlhAQABAAAAACw=";
constexpr char drawingType[] = "data:image/svg+xml;base64,PHN2Zy8+";
constexpr char noPayload[] = "data:image/png;base64,";
constexpr char noType[] = "data:;base64,AAAA";
constexpr char noBase64[] = "data:image/png,AAAA";
constexpr char junk[] = "data:image/png;base64,!!!!@@@@####";
constexpr char oddPadding[] = "data:image/png;base64,A===";
constexpr char zeros[] = "data:image/png;base64,AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";

constexpr std::array references = {
    HostileFile{"Nothing", End::refused, referringTo<nothing>},
    HostileFile{"LocalFile", End::refused, referringTo<localFile>, {}, "Cannot decode image"},
    HostileFile{"Device", End::refused, referringTo<device>, {}, "Cannot decode image"},
    HostileFile{"Network", End::refused, referringTo<network>, {}, "Cannot decode image"},
    HostileFile{"UnknownType", End::refused, referringTo<unknownType>, {}, "Cannot decode image"},
    HostileFile{"DrawingType", End::refused, referringTo<drawingType>, {}, "Cannot decode image"},
    HostileFile{"NoPayload", End::refused, referringTo<noPayload>},
    HostileFile{"NoType", End::refused, referringTo<noType>},
    HostileFile{"NoBase64", End::refused, referringTo<noBase64>},
    HostileFile{"Junk", End::refused, referringTo<junk>},
    HostileFile{"OddPadding", End::either, referringTo<oddPadding>},
    HostileFile{"Zeros", End::drawn, referringTo<zeros>},
};
INSTANTIATE_TEST_SUITE_P(References, HostileFiles, testing::ValuesIn(references), nameOf);

std::string pngOfSide65535() { return document(pngImage(png(65'535, 65'535, deflated(std::string(1'000, '\0'))))); }
std::string pngOfSide2147483647() {
    return document(pngImage(png(2'147'483'647, 2'147'483'647, deflated(std::string(1'000, '\0')))));
}
std::string pngOfNoSide() { return document(pngImage(png(0, 0, deflated(std::string(1'000, '\0'))))); }
std::string pngBomb() { return document(pngImage(png(10'000, 6'000, deflated(std::string(40'001, '\0'), 6'000)))); }
std::string pngOfTooManyRows() { return document(pngImage(png(1, 1, megabytes(100)))); }
std::string pngCut() { return document(pngImage(soundPng(300).substr(0, 150))); }
std::string pngOfBadSum() {
    std::string bytes = soundPng(30);
    bytes[bytes.size() - 20] = static_cast<char>(bytes[bytes.size() - 20] ^ 1);
    return document(pngImage(bytes));
}
std::string pngOfSide7000() { return document(pngImage(soundPng(7'000))); }
std::string pngOfTextBombs() {
    const std::string text = chunk("zTXt", "key\0\0"s + megabytes(50));
    std::string bytes = soundPng(30);
    bytes.insert(33, repeated(text, 20));
    return document(pngImage(bytes));
}
std::string pngProfileBomb() {
    std::string bytes = soundPng(30);
    bytes.insert(33, chunk("iCCP", "key\0\0"s + megabytes(200)));
    return document(pngImage(bytes));
}
std::string jpegOfSide65535() { return document(jpegImage(jpegOfSide(65'535))); }
std::string jpegOfSide9000() { return document(jpegImage(jpegOfSide(9'000))); }
std::string jpegCut() { return document(jpegImage(jpeg().substr(0, jpeg().size() / 2))); }
std::string jpegHeadOnly() { return document(jpegImage(jpeg().substr(0, 30))); }
std::string jpegAsPng() { return document(image("data:image/png;base64," + base64(jpeg()))); }
std::string pngAsJpeg() { return document(image("data:image/jpeg;base64," + base64(soundPng(20)))); }

constexpr std::array pictures = {
    HostileFile{"PNGOfSide65535", End::either, pngOfSide65535},
    HostileFile{"PNGOfSide2147483647", End::either, pngOfSide2147483647},
    HostileFile{"PNGOfNoSide", End::drawn, pngOfNoSide},
    HostileFile{"PNGBomb", End::either, pngBomb},
    HostileFile{"PNGOfTooManyRows", End::either, pngOfTooManyRows},
    HostileFile{"PNGCut", End::drawn, pngCut},
    HostileFile{"PNGOfBadSum", End::drawn, pngOfBadSum},
    HostileFile{"PNGOfSide7000", End::drawn, pngOfSide7000},
    HostileFile{"PNGOfTextBombs", End::either, pngOfTextBombs},
    HostileFile{"PNGProfileBomb", End::either, pngProfileBomb},
    HostileFile{"JPEGOfSide65535", End::either, jpegOfSide65535},
    HostileFile{"JPEGOfSide9000", End::either, jpegOfSide9000},
    HostileFile{"JPEGCut", End::drawn, jpegCut},
    HostileFile{"JPEGHeadOnly", End::drawn, jpegHeadOnly},
    HostileFile{"JPEGAsPNG", End::drawn, jpegAsPng},
    HostileFile{"PNGAsJPEG", End::drawn, pngAsJpeg},
};
INSTANTIATE_TEST_SUITE_P(Pictures, HostileFiles, testing::ValuesIn(pictures), nameOf);

std::string oftenUsed() {
    return documentWith(R"(viewBox="0 0 100 100" width="3000" height="3000")",
                        R"(<defs><g id="i">)" + pngImage(soundPng(500)) + "</g></defs>" +
                            repeated(R"(<use xlink:href="#i"/>)", 10'000));
}
std::string manyPictures() { return document(repeated(pngImage(soundPng(2)), 10'000)); }
std::string manyLargePictures() { return document(repeated(pngImage(soundPng(4'000)), 20)); }
std::string stretchedBeyondMeasure() { return document(pngImage(soundPng(20), R"(width="1e30" height="1e-30")")); }
std::string farAway() { return document(pngImage(soundPng(20), R"(x="1e30" y="-1e30")")); }
std::string enlarged() { return document(pngImage(soundPng(20), R"(width="1e7" height="1e7")")); }
std::string noWidth() { return document(pngImage(soundPng(20), R"(width="0" height="-5")")); }
std::string inPatterns() {
    return document(R"(<pattern id="p" width="1" height="1">)" + pngImage(soundPng(500)) +
                    R"x(</pattern><rect width="80" height="80" fill="url(#p)"/>)x");
}
std::string inMasks() {
    return document(R"(<mask id="m">)" + pngImage(soundPng(500)) + "</mask>" +
                    repeated(R"x(<rect width="80" height="80" mask="url(#m)"/>)x", 1'000));
}

constexpr std::array places = {
    HostileFile{"OftenUsed", End::either, oftenUsed},
    HostileFile{"ManyPictures", End::drawn, manyPictures},
    HostileFile{"ManyLargePictures", End::either, manyLargePictures},
    HostileFile{"StretchedBeyondMeasure", End::either, stretchedBeyondMeasure},
    HostileFile{"FarAway", End::either, farAway},
    HostileFile{"Enlarged", End::either, enlarged},
    HostileFile{"NoWidth", End::drawn, noWidth},
    HostileFile{"InPatterns", End::either, inPatterns},
    HostileFile{"InMasks", End::either, inMasks},
};
INSTANTIATE_TEST_SUITE_P(Places, HostileFiles, testing::ValuesIn(places), nameOf);

}  // namespace
}  // namespace sorvik::draw::test
