#include "bundle/magick/svg_wrapper.h"

#include <array>
#include <fstream>
#include <iterator>

namespace sorvik::bundle {

namespace {

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1A\n";
constexpr std::size_t headLength = 24;

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(0, sizeof value)) {
        value = value << 8U | static_cast<unsigned char>(byte);
    }
    return value;
}

// RFC 4648, section 4.
std::string base64(std::string_view bytes) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        const std::string_view group = bytes.substr(index, 3);
        std::uint32_t bits = 0;
        for (std::size_t place = 0; place < 3; ++place) {
            bits = bits << 8U | (place < group.size() ? static_cast<unsigned char>(group[place]) : 0U);
        }
        for (std::size_t place = 0; place < 4; ++place) {
            text += place <= group.size() ? alphabet[bits >> (18 - 6 * place) & 63U] : '=';
        }
    }
    return text;
}

}  // namespace

std::string svgAround(std::string_view png, std::uint32_t width, std::uint32_t height) {
    const std::string w = std::to_string(width);
    const std::string h = std::to_string(height);
    std::string size = " width=\"" + w;
    size += "\" height=\"" + h + "\"";
    std::string svg =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\"";
    svg += size + " viewBox=\"0 0 " + w + " " + h + "\">\n<image" + size + " xlink:href=\"data:image/png;base64,";
    svg += base64(png);
    svg += "\"/>\n</svg>\n";
    return svg;
}

bool wrapAsSvg(const std::string& png, const std::string& output) {
    std::ifstream file(png, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (bytes.size() < headLength || !bytes.starts_with(pngSignature)) {
        return false;
    }
    const std::string_view sides = std::string_view(bytes).substr(16, 8);
    std::ofstream target(output, std::ios::binary | std::ios::trunc);
    target << svgAround(bytes, bigEndian(sides), bigEndian(sides.substr(4)));
    target.close();
    if (!target) {
        std::ofstream(output, std::ios::binary | std::ios::trunc);
        return false;
    }
    return true;
}

}  // namespace sorvik::bundle
