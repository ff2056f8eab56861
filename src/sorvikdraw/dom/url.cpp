#include "sorvikdraw/dom/url.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace sorvik::draw::dom {

namespace {

constexpr std::string_view dataScheme = "data:";

constexpr bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Names beyond ASCII are taken as they stand: ids hold them.
constexpr bool mayStandInURL(char c) {
    constexpr std::string_view excluded = R"( "<>\^`{|})";
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x20 && byte != 0x7F && excluded.find(c) == std::string_view::npos;
}

bool escapesAreWhole(std::string_view text) {
    for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
        if (at + 2 >= text.size() || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2])) {
            return false;
        }
    }
    return true;
}

// What stands in front of the first ":" is a scheme, unless a path, a query or a fragment began before.
bool schemeIsSound(std::string_view text) {
    const auto end = text.find_first_of(":/?#");
    if (end == std::string_view::npos || text[end] != ':') {
        return true;
    }
    const auto scheme = text.substr(0, end);
    return !scheme.empty() && isLetter(scheme.front()) && std::all_of(scheme.begin(), scheme.end(), [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
}

bool isReference(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), mayStandInURL) &&
           std::count(text.begin(), text.end(), '#') <= 1 && escapesAreWhole(text) && schemeIsSound(text);
}

constexpr std::int8_t noDigit = -1;
constexpr auto base64Digits = [] {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<std::int8_t, 256> digits{};
    digits.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        digits[static_cast<unsigned char>(alphabet[i])] = static_cast<std::int8_t>(i);
    }
    return digits;
}();

// Four characters make three bytes; each "=" at the very end makes one less.
std::optional<std::vector<std::byte>> decodedBase64(std::string_view text) {
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::vector<std::byte> bytes;
    bytes.reserve(text.size() / 4 * 3);
    for (std::size_t at = 0; at < text.size(); at += 4) {
        std::uint32_t bits = 0;
        for (std::size_t i = at; i < at + 4; ++i) {
            const auto digit = i < text.size() - padding ? base64Digits[static_cast<unsigned char>(text[i])] : 0;
            if (digit == noDigit) {
                return std::nullopt;
            }
            bits = bits << 6U | static_cast<std::uint32_t>(digit);
        }
        for (const unsigned shift : {16U, 8U, 0U}) {
            bytes.push_back(static_cast<std::byte>(bits >> shift & 0xFFU));
        }
    }
    bytes.resize(bytes.size() - padding);
    return bytes;
}

}  // namespace

std::optional<std::string_view> URL::fragment() const {
    const auto hash = absoluteString.find('#');
    return hash == std::string::npos ? std::nullopt : std::optional(std::string_view(absoluteString).substr(hash + 1));
}

std::optional<URLData> urlData(const URL& url) {
    constexpr std::string_view encoding = "base64,";
    std::string_view rest = url.absoluteString;
    const auto semicolon = rest.find(';');
    if (!rest.starts_with(dataScheme) || semicolon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto mimeType = rest.substr(dataScheme.size(), semicolon - dataScheme.size());
    rest.remove_prefix(semicolon + 1);
    if (mimeType.empty() || !rest.starts_with(encoding)) {
        return std::nullopt;
    }
    auto bytes = decodedBase64(rest.substr(encoding.size()));
    if (!bytes || bytes->empty()) {
        return std::nullopt;
    }
    return URLData{mimeType, *std::move(bytes)};
}

std::optional<URL> makeURL(std::string_view text) {
    URL url{std::string(text)};
    if (text.starts_with(dataScheme)) {
        std::erase_if(url.absoluteString, [](char c) { return c == '\t' || c == '\n' || c == ' '; });
    }
    return isReference(url.absoluteString) ? std::optional(std::move(url)) : std::nullopt;
}

}  // namespace sorvik::draw::dom
