#include "imaging/sips/svg_units.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <regex>
#include <string>
#include <string_view>

namespace sorvik::sips {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t headLength = std::size_t{64} * 1024;  // the root element begins within it
constexpr std::size_t longestTag = 8192;                    // a regular expression takes stack by length
constexpr int gzipFraming = 16;

std::string inflatedHead(std::span<const std::byte> bytes) {
    std::string head(headLength, '\0');
    z_stream stream{};
    if (inflateInit2(&stream, gzipFraming + MAX_WBITS) != Z_OK) {
        return {};
    }
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(std::min<std::size_t>(bytes.size(), headLength));
    stream.next_out = reinterpret_cast<Bytef*>(head.data());
    stream.avail_out = static_cast<uInt>(head.size());
    inflate(&stream, Z_SYNC_FLUSH);
    head.resize(head.size() - stream.avail_out);
    inflateEnd(&stream);
    return head;
}

std::string headOf(std::span<const std::byte> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), std::min(bytes.size(), headLength));
    return text.starts_with("\x1F\x8B"sv) ? inflatedHead(bytes) : std::string(text);
}

/// The root's tag; comments before it may speak of one.
std::string rootTag(std::string head) {
    while (true) {
        const std::size_t comment = head.find("<!--");
        const std::size_t root = std::min(head.find("<svg"), head.find("<svg:svg"));
        if (root == std::string::npos) {
            return {};
        }
        if (comment > root) {
            const std::size_t end = std::min(head.find('>', root), root + longestTag);
            return head.substr(root, end - root);
        }
        const std::size_t end = head.find("-->", comment);
        if (end == std::string::npos) {
            return {};
        }
        head.erase(0, end);
    }
}

}  // namespace

bool hasAbsoluteUnits(std::span<const std::byte> svg) {
    static const std::regex length(R"re(\s(width|height)\s*=\s*["']\s*[-+0-9.eE]+\s*(mm|cm|in|pt|pc|Q)\s*["'])re");
    return std::regex_search(rootTag(headOf(svg)), length);
}

}  // namespace sorvik::sips
